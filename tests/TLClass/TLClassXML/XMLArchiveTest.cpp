#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "TLClass/TLClassXML/XMLArchive.h"
#include "tests/TLClass/TLClassXML/ArchiveWriter.h"

namespace {

constexpr const char* kNoZip = "Unable to uncompress ZIP file\n";
constexpr const char* kNoZlib = "Unable to uncompress XML data\n";

struct UNPACKED {
    std::string Content;
    std::string Printed;
};

UNPACKED Unpack(const std::string& strPacked) {
    testing::internal::CaptureStdout();
    std::vector<char> vecContent = {'o', 'l', 'd'};
    EXPECT_TRUE(UnpackXMLBuffer({strPacked.begin(), strPacked.end()}, vecContent));
    return {std::string(vecContent.begin(), vecContent.end()), testing::internal::GetCapturedStdout()};
}

void ExpectUnpacked(const std::string& strPacked, const std::string& strText) {
    const UNPACKED objUnpacked = Unpack(strPacked);
    EXPECT_TRUE(objUnpacked.Content == strText) << objUnpacked.Content.size() << " bytes, not " << strText.size();
    EXPECT_EQ(objUnpacked.Printed, "");
}

void ExpectHandedOn(const std::string& strPacked, const char* pPrinted) {
    const UNPACKED objUnpacked = Unpack(strPacked);
    EXPECT_TRUE(objUnpacked.Content == strPacked) << objUnpacked.Content.size() << " bytes";
    EXPECT_EQ(objUnpacked.Printed, pPrinted);
}

std::string ReadArchive(const char* pName) {
    std::ifstream objFile(std::string(ARCHIVES) + "/" + pName, std::ios::binary);
    return {std::istreambuf_iterator<char>(objFile), std::istreambuf_iterator<char>()};
}

TEST(XMLArchive, FirstEntryOfAZipFileIsUnpacked) {
    for (const std::size_t nSize : {std::size_t{1}, std::size_t{255}, std::size_t{40000}, std::size_t{1500000}}) {
        const std::string strText = MakeDescriptionText(nSize);
        ExpectUnpacked(MakeZip(strText), strText);
        ExpectUnpacked(MakeZip(strText) + MakeZip("a second entry"), strText);
    }
}

TEST(XMLArchive, ArchivesOfUsualToolsAreUnpacked) {
    const std::string strText = MakeDescriptionText(70000);
    for (const char* pName : {"info_zip.zip", "python.zip", "two_entries.zip"}) {
        ExpectUnpacked(ReadArchive(pName), strText);
    }
    // With a data descriptor the local header has no sizes.
    ExpectHandedOn(ReadArchive("streamed.zip"), kNoZip);
    ExpectHandedOn(ReadArchive("stored.zip"), kNoZip);
}

TEST(XMLArchive, ZlibStreamsAreUnpackedUpToTheirFirstZeroByte) {
    for (const std::size_t nSize : {std::size_t{1}, std::size_t{1500000}}) {
        const std::string strText = MakeDescriptionText(nSize);
        ExpectUnpacked(CompressZlib(strText), strText);
    }
    ExpectUnpacked(CompressZlib(std::string("seen\0unseen", 11)), "seen");
    ExpectUnpacked(CompressZlib(""), "");
}

TEST(XMLArchive, ZipFilesThatLieAreHandedOnAsTheyAre) {
    const std::string strText = MakeDescriptionText(1000);
    const std::string strDeflated = Deflate(strText);
    ZIP_ENTRY objHonest;
    objHonest.CompressedSize = static_cast<std::uint32_t>(strDeflated.size());
    objHonest.UncompressedSize = 1000;
    ExpectUnpacked(MakeZip(objHonest, strDeflated), strText);

    const auto ExpectRefused = [&](std::uint32_t ZIP_ENTRY::*pMember, std::uint32_t nValue) {
        ZIP_ENTRY objEntry = objHonest;
        objEntry.*pMember = nValue;
        ExpectHandedOn(MakeZip(objEntry, strDeflated), kNoZip);
    };
    ExpectRefused(&ZIP_ENTRY::CompressedSize, objHonest.CompressedSize + 1);
    ExpectRefused(&ZIP_ENTRY::CompressedSize, objHonest.CompressedSize - 1);
    ExpectRefused(&ZIP_ENTRY::CompressedSize, 0);
    ExpectRefused(&ZIP_ENTRY::CompressedSize, 0xFFFFFFFF - 29);
    ExpectRefused(&ZIP_ENTRY::UncompressedSize, 999);
    ExpectRefused(&ZIP_ENTRY::UncompressedSize, 0xFFFFFFFF);
    ExpectRefused(&ZIP_ENTRY::UncompressedSize, static_cast<std::uint32_t>(kMaxDescriptionLength) + 1);
    ZIP_ENTRY objNamed = objHonest;
    objNamed.NameLength = 0xFFFF;
    objNamed.ExtraLength = 0xFFFF;
    ExpectHandedOn(MakeZip(objNamed, strDeflated), kNoZip);

    ZIP_ENTRY objRoomy = objHonest;
    objRoomy.UncompressedSize = 5000;
    ExpectUnpacked(MakeZip(objRoomy, strDeflated), strText);
}

TEST(XMLArchive, EveryTruncatedArchiveIsHandedOnAsItIs) {
    const std::string strZip = MakeZip(MakeDescriptionText(300));
    const std::string strZlib = CompressZlib(MakeDescriptionText(300));
    for (std::size_t i = 0; i < strZip.size(); ++i) {
        ExpectHandedOn(strZip.substr(0, i), i < 4 ? kNoZlib : kNoZip);
    }
    for (std::size_t i = 0; i < strZlib.size(); ++i) {
        ExpectHandedOn(strZlib.substr(0, i), kNoZlib);
    }
}

TEST(XMLArchive, WhatIsNoArchiveIsHandedOnAsItIs) {
    ExpectHandedOn(MakeDescriptionText(1000), kNoZlib);
    ExpectHandedOn(std::string("PK\x05\x06", 4) + std::string(18, '\0'), kNoZlib);
    ExpectHandedOn(CompressZlib(std::string(1000000, ' ')), kNoZlib);  // grows more than a hundredfold
}

}  // namespace
