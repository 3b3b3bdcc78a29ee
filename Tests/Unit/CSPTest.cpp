// Assertions, the console printer and the lock beneath it.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <glib.h>
#include <gtest/gtest.h>

#include "CSP/Inc/PCDebug.h"
#include "CSP/Inc/PCError.h"
#include "CSP/Inc/PCMutex.h"
#include "CSP/Inc/PCRecord.h"

using HbbTVPlatform::PCError;
using HbbTVPlatform::PCMutex;
using HbbTVPlatform::PCRealDebug;
using HbbTVPlatform::PCRecord;

namespace {

// Made before and destroyed after everything else of the program, the printer's lock included. If its print
// did not go without the lock, this program could not end well.
struct PrintsAtTheVeryEnd {
    PrintsAtTheVeryEnd() = default;
    ~PrintsAtTheVeryEnd() { PCRealDebug::Print("never seen"); }
};
PrintsAtTheVeryEnd s_printsAtTheVeryEnd __attribute__((init_priority(101)));

class AConsolePrinter : public testing::Test {
 protected:
    ~AConsolePrinter() override { PCRealDebug::SetLevel(0, 0xFFFFFFFFU); }

    template <typename Function>
    static std::string OutputOf(Function function) {
        testing::internal::CaptureStdout();
        function();
        return testing::internal::GetCapturedStdout();
    }

    // So many lines after the next.
    static std::string Line(unsigned long after, const std::string& text) {
        return std::to_string(HbbTVPlatform::lineCount + after) + " " + text + "\n";
    }
};

TEST_F(AConsolePrinter, KeepsToItsLevelsAndCountsOnlyWhatItPrints) {
    std::string expected = Line(0, "(0): a 1") + Line(1, "(4294967295): 100%");
    EXPECT_EQ(OutputOf([] {
                  PCRealDebug::Print("a %d", 1);
                  PCRealDebug::Print(0xFFFFFFFFU, "%s", "100%");
              }),
              expected)
        << "at first all of them";
    PCRealDebug::SetLevel(1, 10);
    PCRealDebug::SetLevel(5, 3);
    expected = Line(0, "(1): low") + Line(1, "(10): high");
    EXPECT_EQ(OutputOf([] {
                  PCRealDebug::Print(0, "below");
                  PCRealDebug::Print("without a level");
                  PCRealDebug::Print(1, "low");
                  PCRealDebug::Print(11, "above");
                  PCRealDebug::Print(10, "high");
              }),
              expected);
}

TEST_F(AConsolePrinter, KeepsLinesOfThreadsWhole) {
    constexpr int kThreads = 4;
    constexpr int kLines = 200;
    std::string expected;
    for (unsigned long line = 0; line < kThreads * kLines; ++line)
        expected += Line(line, "(7): left-right");
    EXPECT_EQ(OutputOf([] {
                  std::vector<std::thread> threads;
                  for (int t = 0; t < kThreads; ++t) {
                      threads.emplace_back([] {
                          for (int i = 0; i < kLines; ++i)
                              PCRealDebug::Print(7, "%s-%s", "left", "right");
                      });
                  }
                  for (auto& thread : threads)
                      thread.join();
              }),
              expected);
}

TEST_F(AConsolePrinter, DoesNotDisturbTheEndOfAProgramWhoseThreadsPrint) {
    EXPECT_EXIT(
        {
            PCRealDebug::SetLevel(1, 1);
            std::atomic<int> printing = 0;
            for (int t = 0; t < 3; ++t) {
                std::thread([&printing] {
                    for (;;) {
                        PCRealDebug::Print("silent, but locked");
                        printing.fetch_or(1);
                    }
                }).detach();
            }
            while (printing == 0)
                std::this_thread::yield();
            std::exit(0);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(AConsolePrinter, AssertsThatThereIsAFormat) {
    void (*const print)(unsigned, const char*, ...) = PCRealDebug::Print;
    EXPECT_EXIT(print(3, nullptr), testing::KilledBySignal(SIGABRT),
                "Assertion failed: .*PCDebug.cpp \\([0-9]+\\) - format != (NULL|nullptr)");
}

TEST(AnAssertion, SaysWhatFailedAndWhereAndEndsTheProcess) {
    EXPECT_EXIT(PC_ASSERT(1 + 1 == 3), testing::KilledBySignal(SIGABRT),
                "Assertion failed: .*CSPTest.cpp \\([0-9]+\\) - 1 \\+ 1 == 3\n"
                "Debug information:\n"
                "    Thread ID: 0x[0-9a-f]{8}\n"
                "Call stack:\n"
                ".*\\[0x[0-9a-f]+\\]");
}

TEST(AMutex, IsHeldByOneThreadAsOftenAsItTookIt) {
    PCMutex mutex;
    std::atomic<bool> taken = false;
    mutex.lock();
    mutex.lock();
    std::thread other([&] {
        const std::lock_guard guard(mutex);
        taken = true;
    });
    mutex.unlock();
    // Still held once: the other thread cannot have it, however long it has had to try.
    for (int i = 0; i < 1000; ++i)
        std::this_thread::yield();
    EXPECT_FALSE(taken);
    mutex.unlock();
    other.join();
    EXPECT_TRUE(taken);
}

TEST(AMutex, AssertsThatOnlyItsHolderGivesItBack) {
    EXPECT_EXIT(
        {
            PCMutex mutex;
            mutex.lock();
            std::thread([&] { mutex.unlock(); }).join();
        },
        testing::KilledBySignal(SIGABRT), "m_owner == pthread_self");
}

TEST(AnErrorNumber, IsTheThreadsOwn) {
    PCError::Set(EINVAL);
    std::thread([] { PCError::Set(ENOENT); }).join();
    EXPECT_EQ(PCError::Num(), EINVAL);
}

TEST(ARecord, EndsWithItsFileAt32MiB) {
    const std::string path = testing::TempDir() + "record-" + std::to_string(getpid());
    constexpr off_t kMost = 32 * 1024 * 1024;
    constexpr off_t kRoom = 500;
    ASSERT_GE(close(creat(path.c_str(), 0600)), 0);
    ASSERT_EQ(truncate(path.c_str(), kMost - kRoom), 0);
    setenv("HBBTV_RECORD", path.c_str(), 1);
    PCRecord::Open();
    ASSERT_TRUE(PCRecord::IsOn());
    for (int i = 0; i < 100 && PCRecord::IsOn(); ++i)
        PCRecord().Begin("call", "Some.call", "");
    EXPECT_FALSE(PCRecord::IsOn());
    struct stat status = {};
    ASSERT_EQ(stat(path.c_str(), &status), 0);
    EXPECT_GT(status.st_size, kMost - kRoom);
    EXPECT_LE(status.st_size, kMost);
    unlink(path.c_str());
}

TEST(ARecord, IsALineThatAPipeTakesInOnePieceWhateverItsTextsAre) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    EXPECT_FALSE(PCRecord::IsOn());
    setenv("HBBTV_RECORD", ("/proc/self/fd/" + std::to_string(ends[1])).c_str(), 1);
    PCRecord::Open();
    ASSERT_TRUE(PCRecord::IsOn());
    std::string umlauts;
    for (int i = 0; i < 2000; ++i)
        umlauts += "\u00e4";
    {
        PCRecord outer;
        outer.Begin("call", "Outer.call", umlauts);
        outer.SetResult(std::string(5000, '\n'));
        outer.SetError("a \"quoted\" \\ text");
        PCRecord inner;
        inner.BeginLong("bus", "Inner.call", std::string(5000, '"'));
    }
    // What encloses something long is told of before it, and both once more when they are over.
    const char* const names[] = {"Outer.call", "Inner.call", "Inner.call", "Outer.call"};
    std::string lines(1 << 16, '\0');
    lines.resize(static_cast<size_t>(read(ends[0], lines.data(), lines.size())));
    for (const std::string name : names) {
        const size_t length = lines.find('\n') + 1;
        const std::string line = lines.substr(0, length);
        lines.erase(0, length);
        EXPECT_LE(length, static_cast<size_t>(PIPE_BUF));
        EXPECT_NE(line.find(name), std::string::npos) << line;
        EXPECT_TRUE(g_utf8_validate(line.data(), static_cast<gssize>(line.size()), nullptr)) << line;
    }
    EXPECT_EQ(lines, "");
}

}  // namespace
