#include "foundation/log_file.h"

#include <atomic>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <thread>
#include <vector>

#include "debugger_capture.h"
#include "traced_test.h"

#ifdef _WIN32
#include <process.h>
#else
#include "host/fault_injection.h"
#endif

namespace {

constexpr int kLinesOfEach = 60;
class LogFile : public TracedTest {
  protected:
    void SetUp() override {
        TracedTest::SetUp();
        OpenLogMutex();
        path = platform::MakeTemporaryFile(platform::TemporaryFolder().c_str(), "LOG");
        ASSERT_FALSE(path.empty());
        SetLogFileName(path.c_str());
    }
    void TearDown() override {
        platform::DeleteFilePath(path.c_str());
        CloseLogMutex();
        TracedTest::TearDown();
    }
    std::string Content() const {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }

    std::string path;
};

// Lines of 200 equal letters: a mixed line shows.
void WriteLines(char letter, int count) {
    const std::string line(200, letter);
    for (int at = 0; at < count; ++at) LogfilePrint(line.c_str());
}

TEST_F(LogFile, LinesAreAppendedWithLineEnds) {
    gTrace.logging = true;
    LogfilePrint("one");
    LogfilePrint("two");
    EXPECT_EQ(Content(), "one\r\ntwo\r\n");
    EXPECT_TRUE(gTrace.logging);
}

TEST_F(LogFile, TextThatEndsInALineFeed_GetsAnotherLineEnd) {
    gTrace.logging = true;
    LogfilePrint("one\n");
    EXPECT_EQ(Content(), "one\n\r\n");
}

TEST_F(LogFile, WhatStandsInTheFileStays) {
    std::ofstream(path, std::ios::binary) << "old\r\n";
    gTrace.logging = true;
    LogfilePrint("new");
    EXPECT_EQ(Content(), "old\r\nnew\r\n");
}

TEST_F(LogFile, NothingIsWrittenWhileLoggingIsOffOrThereIsNoName) {
    LogfilePrint("off");
    gTrace.logging = true;
    LogfilePrint(nullptr);
    SetLogFileName("");
    LogfilePrint("nameless");
    EXPECT_EQ(Content(), "");
    EXPECT_TRUE(gTrace.logging);
}

TEST_F(LogFile, TracesReachTheFile) {
    gTrace.logging = true;
    DbgVsprintf("Func", "text");
    EXPECT_NE(Content().find("Func() text\r\n"), std::string::npos);
}

TEST_F(LogFile, FileIsClosedAndCanBeDeletedBetweenLines) {
    gTrace.logging = true;
    LogfilePrint("one");
    EXPECT_TRUE(platform::DeleteFilePath(path.c_str()));
    LogfilePrint("two");
    EXPECT_EQ(Content(), "two\r\n");
}

TEST_F(LogFile, OpenerTracesItselfOnlyInDebugMode_AndNeverIntoTheLineBeingWritten) {
    gTrace.logging = true;
    LogfilePrint("quiet");
    EXPECT_TRUE(view.ConsoleLines().empty());
    TraceToConsole();
    LogfilePrint("loud");
    EXPECT_TRUE(view.HasLine("GetLogfileHandle() Entered"));
    EXPECT_TRUE(view.HasLine("GetLogfileHandle() CreateFile(" + path + ") SUCCESS. Returning ("));
    EXPECT_EQ(Content(), "quiet\r\nloud\r\n");
}

TEST_F(LogFile, FileThatCannotBeCreated_IsReportedOnceAndLoggingStops) {
    const std::string folder = path + ".none";
    SetLogFileName((folder + platform::kPathSeparator + "log.txt").c_str());
    gTrace.logging = true;
    LogfilePrint("one");
    EXPECT_FALSE(gTrace.logging);
    EXPECT_EQ(view.CountLines("LogfilePrint() CreateFile() Failed. Error is "), 1);
    EXPECT_EQ(view.CountLines("GetLogfileHandle() Call to CreateFile("), 1);
    view.Clear();
    LogfilePrint("two");
    DbgVsprintf("Func", "three");
    EXPECT_TRUE(view.ConsoleLines().empty());
}

TEST_F(LogFile, Opener_NullOrEmptyName_IsAnInvalidParameter) {
    gTrace.verbose = true;
    DebuggerCapture debugger;
    EXPECT_EQ(GetLogfileHandle(""), platform::kNoFile);
    EXPECT_EQ(platform::LastSystemError(), platform::kErrorInvalidParameter);
    EXPECT_EQ(GetLogfileHandle(nullptr), platform::kNoFile);
    const std::string text = "GetLogfileHandle(ERROR) Null Parameter passed in. Returning ffffffff\r\n";
    EXPECT_EQ(debugger.Take(), text + text);
    EXPECT_EQ(view.ConsoleLines(), (std::vector<std::string>{text, text}));
}

TEST_F(LogFile, Opener_Success_ClearsTheLastError) {
    platform::SetLastSystemError(1234);
    const platform::FileHandle file = GetLogfileHandle(path.c_str());
    ASSERT_NE(file, platform::kNoFile);
    EXPECT_EQ(platform::LastSystemError(), 0U);
    platform::CloseFile(file);
}

TEST_F(LogFile, LoggingKeepsTheLastSystemError) {
    gTrace.logging = true;
    platform::SetLastSystemError(1234);
    LogfilePrint("one");
    EXPECT_EQ(platform::LastSystemError(), 1234U);
}

TEST_F(LogFile, ClosingWithoutAnOpenFile_WritesNothing) {
    gTrace.logging = true;
    CloseLogfile();
    EXPECT_EQ(Content(), "");
}

void ExpectWholeLines(const std::string& content, std::size_t count) {
    std::size_t lines = 0;
    for (std::size_t at = 0; at < content.size(); ++lines) {
        const std::size_t end = content.find("\r\n", at);
        ASSERT_NE(end, std::string::npos);
        ASSERT_EQ(content.substr(at, end - at), std::string(200, content[at]));
        at = end + 2;
    }
    EXPECT_EQ(lines, count);
}

TEST_F(LogFile, SeveralThreads_LinesInterleaveWholeAndNoneIsLost) {
    gTrace.logging = true;
    std::vector<std::thread> threads;
    for (const char letter : {'a', 'b', 'c'}) threads.emplace_back(WriteLines, letter, kLinesOfEach);
    for (std::thread& thread : threads) thread.join();
    ExpectWholeLines(Content(), 3 * kLinesOfEach);
    EXPECT_TRUE(gTrace.logging);
}

#ifdef _WIN32
// Only here: in the native build a named mutex ends at the process.
constexpr char kFileVariable[] = "ZARN_TEST_LOG_FILE";

// Not a test by itself: the second program of the next one runs it.
TEST(LogFileSecondProgram, DISABLED_WritesItsLines) {
    const char* path = std::getenv(kFileVariable);
    ASSERT_NE(path, nullptr);
    OpenLogMutex();
    SetLogFileName(path);
    gTrace.logging = true;
    WriteLines('z', kLinesOfEach);
    EXPECT_TRUE(gTrace.logging);
    gTrace.logging = false;
}

constexpr char kFilter[] = "--gtest_filter=LogFileSecondProgram.*";
constexpr char kAlsoDisabled[] = "--gtest_also_run_disabled_tests";

intptr_t StartSecondProgram(const std::string& file) {
    const std::string variable = std::string(kFileVariable) + "=" + file;
    _putenv(variable.c_str());
    return _spawnl(_P_NOWAIT, platform::ProgramPath().c_str(), "second", kFilter, kAlsoDisabled, nullptr);
}

int WaitForProgram(intptr_t program) {
    int status = -1;
    _cwait(&status, program, 0);
    return status;
}

// This program writes as long as the second one runs, so that they really meet.
TEST_F(LogFile, TwoProgramsWithTheSameFile_LinesInterleaveWhole) {
    const auto second = StartSecondProgram(path);
    ASSERT_NE(second, -1);
    int status = -1;
    std::atomic<bool> ended = false;
    std::thread waiter([&] {
        status = WaitForProgram(second);
        ended = true;
    });
    gTrace.logging = true;
    int written = 0;
    for (; !ended && written < 100000; ++written) WriteLines('a', 1);
    waiter.join();
    EXPECT_EQ(status, 0);
    EXPECT_GT(written, 1);
    ExpectWholeLines(Content(), static_cast<std::size_t>(written + kLinesOfEach));
}

#else
struct Fault {
    fault_injection::Call call;
    int nth;
    const char* report;
};

TEST_F(LogFile, EveryFailedStepIsReportedAndSwitchesLoggingOff) {
    using fault_injection::Call;
    const Fault faults[] = {
        {Call::OpenFile, 1, "LogfilePrint() CreateFile() Failed. Error is 112:"},
        {Call::SeekFile, 1, "LogfilePrint() SetFilePointer() Failed. Error is 112:"},
        {Call::WriteFile, 1, "LogfilePrint() WriteFile() Failed. Error is 112:"},
        {Call::SeekFile, 2, "LogfilePrint() SetFilePointer() Failed. Error is 112:"},
        {Call::WriteFile, 2, "LogfilePrint() WriteFile() Failed. Error is 112:"},
    };
    for (const Fault& fault : faults) {
        view.Clear();
        gTrace.logging = true;
        const fault_injection::Scope scope(fault.call, fault.nth, platform::kErrorDiskFull);
        LogfilePrint("text");
        EXPECT_TRUE(scope.Fired()) << fault.report;
        EXPECT_FALSE(gTrace.logging) << fault.report;
        EXPECT_EQ(view.CountLines(fault.report), 1) << fault.report;
    }
}
#endif

}  // namespace
