#include <functional>
#include <sstream>
#include <stdexcept>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "GenApi/GCException.h"
#include "TLClass/TLClassFeature/FeatureFile.h"
#include "tests/GenApi/TestMap.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// A node map with the settings `<name>A` and `<name>B`, whose values may be from 0 to 100.
class CSettings : public CTestMap {
public:
    explicit CSettings(const std::string& strName)
        : CTestMap("<Category Name='Root'><pFeature>" + strName + "A</pFeature><pFeature>" + strName +
                   "B</pFeature></Category><String Name='DeviceModelName'><Value>Camera 1</Value></String>" +
                   Setting(strName + "A", 0) + Setting(strName + "B", 4)) {}

private:
    static std::string Setting(const std::string& strName, int nAddress) {
        return "<Integer Name='" + strName + "'><Streamable>Yes</Streamable><pValue>" + strName +
               "Reg</pValue><Min>0</Min><Max>100</Max></Integer>" + Reg(strName + "Reg", nAddress);
    }
};

class FeatureFile : public testing::Test {
protected:
    std::string Saved() {
        std::ostringstream stream;
        File.Save(stream);
        return stream.str();
    }
    std::vector<std::string> Load(const std::string& strText, bool bVerify = true) {
        std::istringstream stream(strText);
        return File.Load(stream, bVerify);
    }
    std::string RefusalOf(const std::string& strText) {
        try {
            Load(strText);
        } catch (const GenICam_3_0::GenericException& objError) {
            return objError.GetDescription();
        } catch (const std::runtime_error& objError) {
            return objError.what();
        }
        return "no refusal";
    }
    int TakeWrites() { return Remote.Port.TakeWrites() + Local.Port.TakeWrites() + Stream.Port.TakeWrites(); }

    CSettings Remote{"Remote"}, Local{"Local"}, Stream{"Stream"};
    CFeatureFile File{&Remote.Map, &Local.Map, &Stream.Map};
};

std::string Replaced(std::string strText, const std::string& strFrom, const std::string& strTo) {
    for (std::size_t n = strText.find(strFrom); n != std::string::npos; n = strText.find(strFrom, n + strTo.size())) {
        strText.replace(n, strFrom.size(), strTo);
    }
    return strText;
}

TEST_F(FeatureFile, IsReadBackAsItWasWritten) {
    Remote.Port.PutNumber(0, 10);
    Remote.Port.PutNumber(4, 11);
    Local.Port.PutNumber(0, 20);
    Stream.Port.PutNumber(4, 31);
    const std::string strText = Saved();

    const std::string strDashes(51, '-');
    const std::string strBag =
        "# {05D8C294-F295-4dfb-9D01-096BD04049F4}\n# GenApi persistence file (version 3.0.0)\n# Device\n";
    EXPECT_EQ(strText, "FileVersion: 1.0\nDeviceModelName: Camera 1\n\n</" + strDashes +
                           "Remote device features are as follows:" + strDashes + ">\n" + strBag +
                           "RemoteA\t10\nRemoteB\t11\n\n</" + strDashes +
                           "Local device features are as follows:" + strDashes + ">\n" + strBag +
                           "LocalA\t20\nLocalB\t0\n\n</" + strDashes + "Stream features are as follows:" + strDashes +
                           ">\n" + strBag + "StreamA\t0\nStreamB\t31\n");

    CSettings objRemote{"Remote"}, objLocal{"Local"}, objStream{"Stream"};
    std::istringstream stream(strText);
    EXPECT_THAT(CFeatureFile(&objRemote.Map, &objLocal.Map, &objStream.Map).Load(stream, true), IsEmpty());
    EXPECT_EQ(objRemote.Port.NumberAt(0), 10U);
    EXPECT_EQ(objRemote.Port.NumberAt(4), 11U);
    EXPECT_EQ(objLocal.Port.NumberAt(0), 20U);
    EXPECT_EQ(objStream.Port.NumberAt(4), 31U);
}

TEST_F(FeatureFile, LeavesAndTellsAValueThatWouldEndItsSection) {
    CTestMap objRemote(
        "<String Name='DeviceModelName'><Value>Camera 1</Value></String>"
        "<String Name='DeviceUserID'><Streamable>Yes</Streamable><Value>a&lt;/b&gt;</Value></String>"
        "<Integer Name='Width'><Streamable>Yes</Streamable><Value>5</Value></Integer>");
    std::stringstream stream;
    std::vector<std::string> vecError;
    CFeatureFile objFile(&objRemote.Map, &Local.Map, &Stream.Map);
    objFile.Save(stream, &vecError);
    EXPECT_THAT(vecError, ElementsAre(HasSubstr("DeviceUserID")));
    objRemote.Integer("Width").SetValue(6);
    EXPECT_THAT(objFile.Load(stream, true), IsEmpty());
    EXPECT_EQ(objRemote.Integer("Width").GetValue(), 5);
}

TEST_F(FeatureFile, RefusesATextBeforeAnythingIsApplied) {
    const std::string strGood = Saved();
    const auto With = [&](const char* pFrom, const char* pTo) { return Replaced(strGood, pFrom, pTo); };
    const std::string strVersionEnd =
        " is not supported. Please select a file with version smaller than or equal to 1.0";
    const struct {
        std::string strText, strMessage;
    } tblCase[] = {
        {"", "Invalid feature file format"},
        {std::string("\x7F"
                     "ELF\0\2\1</\0>\xFF",
                     12),
         "Invalid feature file format"},
        {strGood + "\n</x>\nfifth", "Invalid feature file format"},
        {strGood.substr(0, strGood.rfind("\n</")), "Invalid feature file format"},
        {With(">", ""), "Failed to parse the 4th line"},
        {With("1.0\n", "0.9\n"), "The file with version 0.9" + strVersionEnd},
        {With("\n", "\r\n"), "The file with version 1.0\r" + strVersionEnd},
        {With("FileVersion", "Version"), "Can not find FileVersion"},
        {With("FileVersion", "TheFileVersions: 1.0 FileVersion"), "Can not find FileVersion"},
        {With("DeviceModelName", "Model"), "Can not find DeviceModelName"},
        {With("Camera 1", "camera 1"),
         "The device model(camera 1) in file is not the same as that in the device(Camera 1)"},
        {std::string(CFeatureFile::kMaxFeatureFileSize + 1, 'x'),
         "The feature file is larger than the 8388608 bytes that are taken in"},
    };
    TakeWrites();
    for (const auto& objCase : tblCase) {
        EXPECT_EQ(RefusalOf(objCase.strText), objCase.strMessage) << objCase.strText.substr(0, 80);
        EXPECT_EQ(TakeWrites(), 0);
    }
    std::istringstream stream(strGood);
    stream.setstate(std::ios_base::badbit);
    EXPECT_THROW(File.Load(stream, true), std::runtime_error);
}

TEST_F(FeatureFile, IsComparedSectionBySectionWithoutAWrite) {
    const std::string strText = Replaced(Saved(), "StreamB\t0", "StreamB\t7\nGone\t1");
    Local.Port.PutNumber(0, 5);
    Local.Map._InvalidateNodes();
    TakeWrites();
    std::istringstream stream(strText);
    const FEATURE_FILE_COMPARISON objComparison = File.Compare(stream);
    ASSERT_EQ(objComparison.Differences.size(), 2U);
    EXPECT_EQ(objComparison.Differences[0].Section, EFeatureFileSection::LocalDevice);
    EXPECT_EQ(objComparison.Differences[0].Feature.OnDevice, "5");
    EXPECT_EQ(objComparison.Differences[1].Section, EFeatureFileSection::Stream);
    EXPECT_EQ(objComparison.Differences[1].Feature.InBag, "7");
    EXPECT_THAT(objComparison.NotCompared, ElementsAre(HasSubstr("Gone")));
    EXPECT_EQ(TakeWrites(), 0);
    std::istringstream streamOther(Replaced(strText, "Camera 1", "Camera 2"));
    EXPECT_THROW(File.Compare(streamOther), std::runtime_error);
}

TEST_F(FeatureFile, RefusedValuesAreToldAndStopNothing) {
    const std::string strText =
        Replaced(Replaced(Saved(), "RemoteA\t0", "RemoteA\t101\nGone\t1"), "StreamB\t0", "StreamB\t7");
    EXPECT_THAT(Load(strText), ElementsAre(HasSubstr("RemoteA"), HasSubstr("Gone")));
    EXPECT_EQ(Stream.Port.NumberAt(4), 7U);

    Local.Port.FailFromNowOn(true);
    Local.Map._InvalidateNodes();
    std::ostringstream stream;
    std::vector<std::string> vecError;
    File.Save(stream, &vecError);
    EXPECT_THAT(vecError, ElementsAre("LocalA: the port fails", "LocalB: the port fails"));
    EXPECT_THAT(stream.str(), HasSubstr("StreamB\t7"));
}

TEST_F(FeatureFile, LastLineNeedsNoEnd) {
    std::string strText = Replaced(Saved(), "StreamB\t0", "StreamB\t7");
    strText.pop_back();
    EXPECT_THAT(Load(strText), IsEmpty());
    EXPECT_EQ(Stream.Port.NumberAt(4), 7U);
}

TEST_F(FeatureFile, SectionWithoutItsMarkStopsBehindThoseBeforeIt) {
    std::string strText = Replaced(Replaced(Saved(), "RemoteA\t0", "RemoteA\t1"), "StreamA\t0", "StreamA\t1");
    strText.replace(strText.find("{05D8", strText.find("Local device")), 5, "{0000");
    EXPECT_EQ(RefusalOf(strText),
              "The stream is not a GenApi feature stream since it is missing the magic GUID in the first line");
    EXPECT_EQ(Remote.Port.NumberAt(0), 1U);
    EXPECT_EQ(Stream.Port.NumberAt(0), 0U);
}

}  // namespace
