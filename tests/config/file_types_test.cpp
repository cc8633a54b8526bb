#include "config/file_types.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <thread>

#include "config/icon_info.h"
#include "config/mode_map_store.h"
#include "config/settings.h"
#include "config/shell_classes.h"
#include "config/store_fixture.h"
#include "platform/clock.h"

class FileTypes : public StoreTest {
  protected:
    static platform::RegistryKey Map(const std::string& extension) { return Key("Defaults\\ModeMap\\" + extension); }
    static void MapMode(const std::string& extension, char mode) {
        const std::uint8_t bytes[] = {static_cast<std::uint8_t>(mode), 0};
        Map(extension).WriteBytes("TransferMode", bytes);
    }
    static std::string DefaultDescription(std::string_view extension) {
        const FTobject* const type = GetDefaultType(extension);
        return type != nullptr ? std::string(type->pszDescription.view()) : "(none)";
    }
    static std::string Description(std::string_view name) {
        return std::string(FileTypeOf(name, false)->pszDescription.view());
    }
};

TEST_F(FileTypes, NameWithoutADotTakesTheDefaultMode) {
    gZarn.mode.mode = 'L';
    EXPECT_EQ(GetTransferMode("README"), 'L');
    EXPECT_EQ(GetTransferMode(nullptr), 'L');
    EXPECT_EQ(GetTransferMode("a.zz9"), 'L');
}

TEST_F(FileTypes, ModeIsTracedWithTheReasonOfTheDefault) {
    RecordTraces();
    GetTransferMode("README");
    EXPECT_TRUE(view_.HasLine("GetTransferMode() Done. Failed to find a '.', Returning (A)"));
    GetTransferMode("a.zz9");
    EXPECT_TRUE(view_.HasLine("GetTransferMode() Done. Key NOT Opened for (.zz9). Returning A)"));
    GetTransferMode(nullptr);
    EXPECT_TRUE(view_.HasLine("GetTransferMode() Entered with NULL Parameter. Returning (A)"));
}

TEST_F(FileTypes, EitherCaseFindsTheSameMapKeyAndTheSameType) {
    Map(".txt").WriteText("Description", "Plain words");
    MapMode(".txt", 'I');
    EXPECT_EQ(GetTransferMode("x.TXT"), 'I');
    EXPECT_EQ(GetTransferMode("x.txt"), 'I');
    const FTobject* const type = FileTypeOf("x.txt", false);
    EXPECT_EQ(FileTypeOf("x.TXT", false), type);
    EXPECT_EQ(type->pszType.view(), ".TXT");
    EXPECT_EQ(LookupFileType(".Txt"), type);
}

TEST_F(FileTypes, ModeIsLookedUpFromTheFirstDotOn) {
    MapMode(".txt", 'I');
    EXPECT_EQ(GetTransferMode("a.b.txt"), 'A');
    MapMode(".b.txt", 'L');
    EXPECT_EQ(GetTransferMode("a.b.txt"), 'L');
}

TEST_F(FileTypes, DamagedMapModeFallsBackToTheDefault) {
    Map(".txt").WriteText("TransferMode", "I");
    EXPECT_EQ(GetTransferMode("a.txt"), 'A');
    MapMode(".txt", 'Q');
    EXPECT_EQ(GetTransferMode("a.txt"), 'A');
    const std::uint8_t three[] = {'I', 0, 0};
    Map(".txt").WriteBytes("TransferMode", three);
    EXPECT_EQ(GetTransferMode("a.txt"), 'A');
}

TEST_F(FileTypes, NameWithABackslashReachesNoOtherKey) {
    MapMode(".txt", 'I');
    EXPECT_EQ(GetTransferMode("a.txt\\..\\.txt"), 'A');
    EXPECT_EQ(GetTransferMode("a.\\.txt"), 'A');
}

TEST_F(FileTypes, BuiltInDescriptions) {
    EXPECT_EQ(DefaultDescription(".Z"), "Unix Compressed File");
    EXPECT_EQ(DefaultDescription(".z"), "Unix Packed File");
    EXPECT_EQ(DefaultDescription(".SH"), "Unix Shell File");
    EXPECT_EQ(DefaultDescription(".ico"), "Icon");
    EXPECT_EQ(DefaultDescription(".Cur"), "Cursor");
    EXPECT_EQ(DefaultDescription(".CPIO"), "Unix Cpio File");
    EXPECT_EQ(DefaultDescription(".7z"), "Generic File");
    EXPECT_EQ(DefaultDescription(".abc"), "abc File");
    EXPECT_EQ(DefaultDescription(".Abd"), "Abd File");
}

TEST_F(FileTypes, OnlyADotIsNoSuffix) {
    RecordTraces();
    EXPECT_EQ(GetDefaultType("."), nullptr);
    EXPECT_TRUE(view_.HasLine("GetDefaultType() . doesn't have a Suffix. Returning NULL"));
}

TEST_F(FileTypes, CompressedAndPackedFilesOfOneFolderAreToldApart) {
    const FTobject* const compressed = FileTypeOf("a.Z", false);
    const FTobject* const packed = FileTypeOf("a.z", false);
    EXPECT_EQ(compressed->pszDescription.view(), "Unix Compressed File");
    EXPECT_EQ(packed->pszDescription.view(), "Unix Packed File");
    EXPECT_EQ(LookupFileType(".Z"), compressed);
    EXPECT_EQ(LookupFileType(".z"), packed);
}

TEST_F(FileTypes, LookupOfEitherCaseFindsALonePackedType) {
    const FTobject* const packed = FileTypeOf("a.z", false);
    EXPECT_EQ(LookupFileType(".Z"), packed);
}

TEST_F(FileTypes, InsertingTakesTheTextOverInUpperCaseAndFindsItAgain) {
    FTobject* const type = InsertFileType(OwnedText::Copy(".abc"));
    ASSERT_NE(type, nullptr);
    EXPECT_EQ(type->pszType.view(), ".ABC");
    EXPECT_EQ(InsertFileType(OwnedText::Copy(".aBc")), type);
    EXPECT_EQ(GetFileTypeCount(), 1);
    FTobject* const second = InsertFileType(OwnedText::Copy(".def"));
    EXPECT_EQ(second->pNext, type) << "new at the head";
    EXPECT_EQ(type->pPrev, second);
    EXPECT_EQ(InsertFileType(OwnedText()), nullptr);
}

TEST_F(FileTypes, MapDescribesBeforeTheShell) {
    if (!GiveClass(".zarnq", "zarnqfile") || !SetClassText("zarnqfile", "Shell's words") ||
        !SetClassText("zarnqfile\\DefaultIcon", "c:\\q.dll,3")) {
        GTEST_SKIP() << "this system lets no test register a class";
    }
    const FTobject* type = AddFileType(".zarnq");
    ASSERT_NE(type, nullptr);
    EXPECT_EQ(type->pszDescription.view(), "Shell's words");
    EXPECT_EQ(type->pszIconInfo.view(), "c:\\q.dll,3");
    EXPECT_FALSE(type->bFromModeMap);

    FreeFileTypes();
    Map(".zarnq").WriteText("Description", "User's words");
    type = AddFileType(".zarnq");
    EXPECT_EQ(type->pszDescription.view(), "User's words");
    EXPECT_EQ(type->pszIconInfo.view(), "c:\\q.dll,3") << "the icon still comes from the shell";
    EXPECT_TRUE(type->bFromModeMap);

    FreeFileTypes();
    Map(".zarnq").DeleteValue("Description");
    Map(".zarnq").WriteText("DefaultIcon", "c:\\user.ico,0");
    MapMode(".zarnq", 'I');
    type = FileTypeOf("a.zarnq", false);
    EXPECT_EQ(type->pszDescription.view(), "Shell's words");
    EXPECT_EQ(type->pszIconInfo.view(), "c:\\user.ico,0");
    EXPECT_EQ(type->TransferMode[0], 'I');
    EXPECT_EQ(type->TransferMode[1], '\0');
    EXPECT_TRUE(type->bFromModeMap);
}

TEST_F(FileTypes, ShellCommandForPrintingAndTheOddOneForOpening) {
    if (!GiveClass(".zarnq", "zarnqfile") || !SetClassText("zarnqfile\\shell\\print\\command", "p.exe %1")) {
        GTEST_SKIP() << "this system lets no test register a class";
    }
    const FTobject* const type = InsertFileType(OwnedText::Copy(".zarnq"));
    EXPECT_EQ(Zarn_GetActionCommand(type, true).view(), "p.exe %1");
    EXPECT_FALSE(Zarn_GetActionCommand(type, false));
    SetClassText("zarnqfile\\shell\\open\\command", "o.exe %1");
    EXPECT_FALSE(Zarn_GetActionCommand(type, false)) << "quirk: it is looked up below \"print\"";
    SetClassText("zarnqfile\\shell\\print\\open", "odd.exe %1");
    EXPECT_EQ(Zarn_GetActionCommand(type, false).view(), "odd.exe %1");
    EXPECT_FALSE(Zarn_GetActionCommand(nullptr, true));
}

TEST_F(FileTypes, ClassNameTooLongForAnIconPathIsShown) {
    EXPECT_EQ(GetRootIconInfo(".zarnq", std::string(250, 'c')), "");
    ASSERT_EQ(view_.Boxes().size(), 1U);
    EXPECT_EQ(view_.Boxes().front().text,
              "The Path for Icon Key is TOO large! (Want fit in arg passed to GetRootIconInfo()\n"
              "    Arg size: (260), RegQuery Size: (263)");
}

TEST_F(FileTypes, ExtensionNobodyDescribesGivesNoType) {
    EXPECT_EQ(AddFileType(".zarn-nobody"), nullptr);
    Map(".zarn-nobody").WriteText("Description", "");
    EXPECT_EQ(AddFileType(".zarn-nobody"), nullptr);
    EXPECT_EQ(GetFileTypeCount(), 0);
}

TEST_F(FileTypes, MapWithAModeOnlyGivesABuiltInTypeOfThatMode) {
    MapMode(".zarnm", 'I');
    const FTobject* const type = FileTypeOf("a.zarnm", false);
    EXPECT_EQ(type->pszDescription.view(), "zarnm File");
    EXPECT_EQ(type->TransferMode[0], 'I');
}

TEST_F(FileTypes, EntriesAreTypedByTheLastDot) {
    EXPECT_EQ(Description("a.tar.zarngz"), "zarngz File");
    EXPECT_EQ(Description(".zarnrc"), "zarnrc File");
    EXPECT_EQ(Description("README"), "Generic File");
    EXPECT_EQ(Description("ends with."), "Generic File");
    EXPECT_EQ(Description(""), "Generic File");
    EXPECT_EQ(FileTypeOf("README", false), FileTypeOf("Makefile", false));
}

TEST_F(FileTypes, FolderIsOneTypeWhateverItsName) {
    const FTobject* const folder = FileTypeOf("a.txt", true);
    EXPECT_EQ(folder, FileTypeOf("b", true));
    EXPECT_EQ(folder, AddFolderType());
    EXPECT_EQ(folder->pszType.view(), "File Folder");
    EXPECT_EQ(folder->pszDescription.view(), "File Folder");
    EXPECT_EQ(folder->TransferMode[0], 'A');
}

TEST_F(FileTypes, HostileExtensionsAreShownWithoutControlsAndCut) {
    EXPECT_EQ(Description("a.%n%s\x01"), "%n%s? File");
    EXPECT_LE(Description("a." + std::string(5000, 'x')).size(), 259U);
    EXPECT_EQ(Description("a.\\..\\Defaults"), "\\Defaults File");
}

TEST_F(FileTypes, ManyUnknownExtensionsShareOneTypeAfterTheLimit) {
    constexpr int kNames = 100'000;
    const std::uint64_t start = platform::Microseconds();
    for (int number = 0; number < kNames; ++number) {
        ASSERT_NE(FileTypeOf("f.x" + std::to_string(number), false), nullptr);
    }
    const std::uint64_t elapsed = platform::Microseconds() - start;
    EXPECT_EQ(GetFileTypeCount(), kMostUnknownTypes + 1) << "and the shared one";
    EXPECT_EQ(FileTypeOf("f.x99999", false), FileTypeOf("README", false));
    EXPECT_EQ(Description("f.x7"), "x7 File");
    RecordProperty("microseconds", std::to_string(elapsed));
    EXPECT_LT(elapsed, 5'000'000U);
}

TEST_F(FileTypes, RegisteredExtensionsAreFoundBeyondTheLimit) {
    Map(".zarnreg").WriteText("Description", "Registered");
    for (int number = 0; number <= kMostUnknownTypes; ++number) FileTypeOf("f.y" + std::to_string(number), false);
    EXPECT_EQ(Description("f.zarnreg"), "Registered");
}

TEST_F(FileTypes, SavingATypeWritesWhatChangedAndMakesItKnown) {
    FileTypeOf("a.other", false);  // the registrations have been listed before
    FTobject type;
    type.pszType = OwnedText::Copy(".ZARNS");
    type.pszDescription = OwnedText::Copy("Saved words");
    type.pszIconInfo = OwnedText::Copy("c:\\s.dll,1");
    type.TransferMode[0] = 'I';
    EXPECT_TRUE(RegSaveFileType({&type, kModeChanged}));
    EXPECT_EQ(GetTransferMode("a.zarns"), 'I');
    EXPECT_FALSE(GetZarnMapDescription(".zarns").has_value());
    EXPECT_TRUE(RegSaveFileType({&type, kDescriptionChanged | kIconChanged}));
    EXPECT_EQ(GetZarnMapDescription(".zarns"), "Saved words");
    EXPECT_EQ(GetZarnIconInfo(".zarns"), "c:\\s.dll,1");
    RememberExtension(".zarns");
    EXPECT_EQ(Description("a.zarns"), "Saved words");
    EXPECT_FALSE(RegSaveFileType({nullptr, kModeChanged}));
}

TEST_F(FileTypes, TwoThreadsAgreeOnEveryType) {
    constexpr int kNames = 2000;
    std::vector<const FTobject*> first(kNames);
    std::vector<const FTobject*> second(kNames);
    const auto fill = [](std::vector<const FTobject*>& types) {
        for (int number = 0; number < kNames; ++number) {
            types[static_cast<std::size_t>(number)] = FileTypeOf("f.t" + std::to_string(number), number % 10 == 0);
        }
    };
    std::thread other([&] { fill(second); });
    fill(first);
    other.join();
    EXPECT_EQ(first, second);
}

TEST_F(FileTypes, FreeingEmptiesTheList) {
    FileTypeOf("a.abc", false);
    FileTypeOf("a", true);
    EXPECT_GT(GetFileTypeCount(), 0);
    FreeFileTypes();
    EXPECT_EQ(GetFileTypeCount(), 0);
    EXPECT_EQ(LookupFileType(".abc"), nullptr);
    Zarn_FreeFileType(nullptr);
}

namespace {

int gIconCalls = 0;

std::uint16_t CountedIcon(const char* iconInfo) {
    ++gIconCalls;
    return std::string_view(iconInfo) == "c:\\q.dll,3" ? 12 : kGenericFileIcon;
}

std::uint16_t FolderIcon() {
    return 4;
}

}  // namespace

TEST_F(FileTypes, IconIsResolvedOnceAndOnlyWhenShown) {
    gIconCalls = 0;
    Map(".zarni").WriteText("Description", "With icon");
    Map(".zarni").WriteText("DefaultIcon", "c:\\q.dll,3");
    gIconView = {CountedIcon, FolderIcon};
    const FTobject* const type = FileTypeOf("a.zarni", false);
    EXPECT_EQ(gIconCalls, 0);
    EXPECT_EQ(IconOf(type), 12);
    EXPECT_EQ(IconOf(type), 12);
    EXPECT_EQ(gIconCalls, 1);
    EXPECT_EQ(IconOf(FileTypeOf("folder", true)), 4);
    EXPECT_EQ(IconOf(FileTypeOf("README", false)), kGenericFileIcon);
    EXPECT_EQ(IconOf(nullptr), kGenericFileIcon);
    EXPECT_EQ(gIconCalls, 1);
}

TEST_F(FileTypes, IconAskedForBeforeThereAreAnyIsAskedForAgain) {
    const FTobject* const folder = FileTypeOf("folder", true);
    EXPECT_EQ(IconOf(folder), kGenericFileIcon);
    gIconView = {CountedIcon, FolderIcon};
    EXPECT_EQ(IconOf(folder), 4);
}

TEST_F(FileTypes, FileThatIsItsOwnIconShowsTheGenericOne) {
    gIconCalls = 0;
    gIconView = {CountedIcon, FolderIcon};
    FTobject type;
    type.pszIconInfo = OwnedText::Copy("%1");
    EXPECT_EQ(IconOf(&type), kGenericFileIcon);
    EXPECT_EQ(gIconCalls, 0);
}

class IconInfo : public StoreTest {
  protected:
    bool Parse(std::string_view info) { return ParseIconInfo(info, path_, number_); }
    std::string path_;
    int number_ = -99;
};

TEST_F(IconInfo, PathEndsAtTheFirstComma) {
    EXPECT_TRUE(Parse("c:\\a b.dll,12"));
    EXPECT_EQ(path_, "c:\\a b.dll");
    EXPECT_EQ(number_, 12);
    EXPECT_TRUE(Parse("c:\\a.dll,-5,7"));
    EXPECT_EQ(path_, "c:\\a.dll");
    EXPECT_EQ(number_, -5);
    EXPECT_TRUE(Parse("c:\\a.dll,x"));
    EXPECT_EQ(number_, 0);
}

TEST_F(IconInfo, WithoutACommaTheWholeTextIsThePath) {
    EXPECT_TRUE(Parse("c:\\it's here.ico"));
    EXPECT_EQ(path_, "c:\\it's here.ico") << "a blank rules the quoted form out";
    EXPECT_EQ(number_, 0);
}

TEST_F(IconInfo, ApostropheOpensAndADoubleQuoteCloses) {
    EXPECT_TRUE(Parse("'c:\\a.ico\""));
    EXPECT_EQ(path_, "c:\\a.ico");
    EXPECT_EQ(number_, 0);
}

TEST_F(IconInfo, MissingDoubleQuoteIsTracedAndGivesNoPath) {
    RecordTraces();
    EXPECT_FALSE(Parse("'c:\\a.ico'"));
    EXPECT_TRUE(view_.HasLine("ERROR. Expecting a second Quote. Returning NULL"));
}

TEST_F(IconInfo, ElevenCharactersOfTheNumberAreReadAndMoreThanTwelveAreShown) {
    EXPECT_TRUE(Parse("a,000000000012"));
    EXPECT_EQ(number_, 1);
    EXPECT_TRUE(view_.Boxes().empty());
    EXPECT_TRUE(Parse("a,0000000000123"));
    EXPECT_EQ(number_, 1);
    EXPECT_TRUE(view_.HasBox("IconInfo Stuff hosed"));
}

TEST_F(IconInfo, NothingGivesNoPath) {
    EXPECT_FALSE(Parse(""));
    EXPECT_FALSE(Parse(",3"));
}
