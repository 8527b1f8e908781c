#include "platform/QtPrograms.h"

#include <gmock/gmock.h>

#include <QElapsedTimer>

namespace vantor {
namespace {

using namespace std::chrono_literals;

/// What a shell's script writes, read in pieces, and how it ends.
struct Ran {
    std::string Output;
    ProgramEnd End;
    qint64 Milliseconds = 0;
};

Ran RanBy(const std::string& script, const ProgramLimits& limits = {}, const std::string& argument = {},
          std::size_t pieces = 1000) {
    QElapsedTimer clock;
    clock.start();
    Ran ran;
    const auto program = QtPrograms().Start("sh", {"-c", script, "sh", argument}, limits);
    std::vector<std::byte> piece(4096);
    for (std::size_t got = piece.size(); got == piece.size() && pieces-- > 0;) {
        got = program->Read(piece);
        ran.Output.append(reinterpret_cast<const char*>(piece.data()), got);
    }
    ran.End = program->End();
    ran.Milliseconds = clock.elapsed();
    return ran;
}

TEST(QtProgramsTest, OutputMessagesAndStatusAreThoseOfTheProgram) {
    // Arguments pass no shell, and the input is empty.
    const Ran said = RanBy("cat; printf %s \"$1\"; echo ' warned ' >&2; exit 7", {}, "a b'\"$(x)ä");
    EXPECT_EQ(said.Output, "a b'\"$(x)ä");
    EXPECT_EQ(said.End.Messages, "warned");
    EXPECT_EQ(said.End.Status, 7);
    EXPECT_FALSE(said.End.WasStopped);
    EXPECT_EQ(RanBy("seq 1 200000").Output.size(), 1288895U) << "more than a pipe holds";
    EXPECT_NE(RanBy("kill -9 $$").End.Status, 0);
    EXPECT_EQ(QtPrograms().Start("no-such-program-of-vantor", {}, {}), nullptr);
}

TEST(QtProgramsTest, AProgramWithoutAnEndIsStopped) {
    const Ran hung = RanBy("echo begun; exec sleep 60", {.Time = 1s});
    EXPECT_EQ(hung.Output, "begun\n");
    EXPECT_TRUE(hung.End.WasStopped);
    EXPECT_LT(hung.Milliseconds, 5000);
    EXPECT_TRUE(RanBy("while :; do echo more; sleep 0.05; done", {.Time = 1s}).End.WasStopped) << "always a bit more";

    const Ran flood = RanBy("exec yes", {.OutputBytes = 100000});
    EXPECT_TRUE(flood.End.WasStopped);
    EXPECT_LT(flood.Output.size(), 200000U);
    const Ran warnings = RanBy("exec yes >&2", {.OutputBytes = 100000});
    EXPECT_TRUE(warnings.End.WasStopped);
    EXPECT_LE(warnings.End.Messages.size(), 65536U);

    int asked = 0;
    const Ran unwanted = RanBy("exec sleep 60", {.GoesOn = [&] { return ++asked < 3; }});
    EXPECT_TRUE(unwanted.End.WasStopped && unwanted.Milliseconds < 5000);
    const Ran unread = RanBy("exec yes", {}, {}, 1);
    EXPECT_TRUE(unread.End.WasStopped && unread.Milliseconds < 5000);
}

}  // namespace
}  // namespace vantor
