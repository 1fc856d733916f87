#pragma once

/// A description with a feature of each kind on a port "Device" of 4,096 bytes, every register big-endian.
inline constexpr const char* kFeatureDescription = R"(<?xml version="1.0" encoding="utf-8"?>
<RegisterDescription ModelName="Model" VendorName="Vendor" ToolTip="" StandardNameSpace="None"
    SchemaMajorVersion="1" SchemaMinorVersion="1" SchemaSubMinorVersion="0"
    MajorVersion="1" MinorVersion="0" SubMinorVersion="0"
    ProductGuid="00000000-0000-0000-0000-000000000001" VersionGuid="00000000-0000-0000-0000-000000000002"
    xmlns="http://www.genicam.org/GenApi/Version_1_1"
    xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance">
  <Category Name="Root">
    <pFeature>ImageControl</pFeature>
    <pFeature>EventControl</pFeature>
    <pFeature>AlsoInRoot</pFeature>
  </Category>
  <Category Name="ImageControl">
    <pFeature>Width</pFeature>
    <pFeature>Gain</pFeature>
    <pFeature>Rate</pFeature>
    <pFeature>PixelFormat</pFeature>
    <pFeature>ReverseX</pFeature>
    <pFeature>UserName</pFeature>
    <pFeature>Table</pFeature>
    <pFeature>Start</pFeature>
  </Category>
  <Category Name="EventControl">
    <pFeature>EventGroup</pFeature>
    <pFeature>AlsoInRoot</pFeature>
  </Category>
  <Category Name="EventGroup">
    <pFeature>EventData</pFeature>
  </Category>
  <Integer Name="Zero"><Value>0</Value></Integer>
  <Integer Name="AlsoInRoot"><Value>6</Value></Integer>
  <Integer Name="EventData"><Value>5</Value></Integer>
  <Integer Name="Width">
    <DisplayName>Width of the image</DisplayName>
    <pValue>WidthReg</pValue><Min>16</Min><Max>1024</Max><Inc>16</Inc>
  </Integer>
  <IntReg Name="WidthReg">
    <Address>0x100</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>
    <Sign>Unsigned</Sign><Endianess>BigEndian</Endianess>
  </IntReg>
  <Integer Name="NotImplemented"><pIsImplemented>Zero</pIsImplemented><Value>1</Value></Integer>
  <Integer Name="NotAvailable"><pIsAvailable>Zero</pIsAvailable><Value>1</Value></Integer>
  <IntReg Name="WriteOnly">
    <Address>0x104</Address><Length>4</Length><AccessMode>WO</AccessMode><pPort>Device</pPort>
    <Sign>Unsigned</Sign><Endianess>BigEndian</Endianess>
  </IntReg>
  <IntReg Name="ReadOnly">
    <Address>0x108</Address><Length>4</Length><AccessMode>RO</AccessMode><pPort>Device</pPort>
    <Sign>Unsigned</Sign><Endianess>BigEndian</Endianess>
  </IntReg>
  <Float Name="Gain">
    <pValue>GainReg</pValue><Min>0.5</Min><Max>10</Max><Unit>dB</Unit>
  </Float>
  <FloatReg Name="GainReg">
    <Address>0x110</Address><Length>8</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>
    <Endianess>BigEndian</Endianess>
  </FloatReg>
  <Float Name="Rate"><Value>2</Value><Min>0</Min><Max>100</Max><Inc>0.25</Inc><Unit>Hz</Unit></Float>
  <Enumeration Name="PixelFormat">
    <EnumEntry Name="Mono8"><Value>1</Value></EnumEntry>
    <EnumEntry Name="Mono16"><pIsAvailable>Zero</pIsAvailable><Value>2</Value></EnumEntry>
    <EnumEntry Name="RGB8"><pIsImplemented>Zero</pIsImplemented><Value>3</Value></EnumEntry>
    <EnumEntry Name="BayerRG8"><Value>4</Value></EnumEntry>
    <pValue>PixelFormatReg</pValue>
  </Enumeration>
  <IntReg Name="PixelFormatReg">
    <Address>0x120</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>
    <Sign>Unsigned</Sign><Endianess>BigEndian</Endianess>
  </IntReg>
  <Boolean Name="ReverseX"><pValue>ReverseXReg</pValue><OnValue>1</OnValue><OffValue>0</OffValue></Boolean>
  <IntReg Name="ReverseXReg">
    <Address>0x130</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>
    <Sign>Unsigned</Sign><Endianess>BigEndian</Endianess>
  </IntReg>
  <StringReg Name="UserName">
    <Address>0x140</Address><Length>16</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>
  </StringReg>
  <Register Name="Table">
    <Address>0x160</Address><Length>8</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>
  </Register>
  <Command Name="Start"><pValue>StartReg</pValue><CommandValue>7</CommandValue></Command>
  <IntReg Name="StartReg">
    <Address>0x170</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>
    <Sign>Unsigned</Sign><Endianess>BigEndian</Endianess>
  </IntReg>
  <Port Name="Device"/>
</RegisterDescription>
)";
