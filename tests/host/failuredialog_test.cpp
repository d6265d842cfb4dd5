#include "host/failuredialog.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace zelviewer {
namespace {

class Descriptor {
public:
    explicit Descriptor(int number) : m_number(number) {}
    ~Descriptor() { close(m_number); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    operator int() const { return m_number; }

private:
    int m_number;
};

TEST(FailureDialog, IsForProgramsWhoseErrorsNobodyReads) {
    const ScratchFolder folder;
    const Descriptor log(open((folder / "log").c_str(), O_WRONLY | O_CREAT, 0600));
    const Descriptor sameLog(dup(log));
    const Descriptor otherFile(open((folder / "other").c_str(), O_WRONLY | O_CREAT, 0600));
    const Descriptor nothing(open("/dev/null", O_WRONLY));
    int pipes[2] = {}, sockets[2] = {};
    ASSERT_EQ(pipe(pipes), 0);
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, sockets), 0);
    const Descriptor reading(pipes[0]), writing(pipes[1]), journal(sockets[0]), otherEnd(sockets[1]);
    EXPECT_TRUE(IsReadByNobody(nothing, nothing));
    EXPECT_TRUE(IsReadByNobody(journal, journal)) << "a desktop's log";
    EXPECT_TRUE(IsReadByNobody(log, sameLog)) << "a session's log";
    EXPECT_TRUE(IsReadByNobody(nothing, 1'000'000)) << "closed";
    EXPECT_FALSE(IsReadByNobody(nothing, writing)) << "another program waits for it";
    EXPECT_FALSE(IsReadByNobody(otherFile, log)) << "a script keeps it";
    const Descriptor terminal(posix_openpt(O_RDWR | O_NOCTTY));
    EXPECT_FALSE(IsReadByNobody(nothing, terminal));
}

TEST(FailureDialog, WouldStopAScript) {
    EXPECT_FALSE(IsForScripts({}));
    EXPECT_FALSE(IsForScripts({"info.tif", "--stretch", "linear", "--labels", "save.tif"}));
    for (const char* const option : {"--screenshot", "--screenshot=a.png", "--save-view", "--export-meshes", "--info"})
        EXPECT_TRUE(IsForScripts({"a.tif", option})) << option;
}

} // namespace
} // namespace zelviewer
