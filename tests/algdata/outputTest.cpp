/* SPDX-License-Identifier: Apache-2.0 */
/* The output files of algdata in cases that a shell cannot test: signals, owners, old systems. */
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <iterator>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <set>
#include <string>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "options/options.h"
#include "output/outputFile.h"
#include "output/temporaryFile.h"

namespace
{

using namespace algdata;

class Output : public testing::Test
{
  protected:
    Output()
    {
        directory = testing::TempDir() + "algdataOutput.XXXXXX";
        mkdtemp(directory.data());
        file = directory + "/file";
    }
    ~Output() override { std::filesystem::remove_all(directory); }

    std::set<std::string> files() const
    {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(directory))
            names.insert(entry.path().filename());
        return names;
    }

    void put(const std::string& text) const { std::ofstream(file) << text; }
    std::string content() const
    {
        std::ifstream stream(file);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    /* Runs `work` in a child process, which then exits with 0. Returns its wait status. */
    static int inChild(const std::function<void()>& work)
    {
        const pid_t child = fork();
        if (child == 0) {
            work();
            _exit(0);
        }
        int status = 0;
        waitpid(child, &status, 0);
        return status;
    }

    static void write(const OutputFile& output, const std::string& text)
    {
        if (::write(output.descriptor(), text.data(), text.size()) != static_cast<ssize_t>(text.size()))
            _exit(1);
    }

    std::string directory;
    std::string file;
};

/* After this, the process cannot create files without a name. */
void refuseNamelessFiles()
{
    constexpr uint32_t flag = O_TMPFILE & ~O_DIRECTORY;
    sock_filter code[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_openat, 0, 3),
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, args[2])),
        BPF_JUMP(BPF_JMP | BPF_JSET | BPF_K, flag, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EOPNOTSUPP),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    const sock_fprog program = {std::size(code), code};
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
        prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0)
        _exit(77);
}

bool canRefuseNamelessFiles()
{
    const pid_t child = fork();
    if (child == 0) {
        refuseNamelessFiles();
        _exit(open(testing::TempDir().c_str(), O_TMPFILE | O_WRONLY, 0600) < 0 ? 0 : 77);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return status == 0;
}

/* ---- Signals ------------------------------------------------------------ */

TEST_F(Output, aSignalLeavesNoTemporaryFile)
{
    for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGABRT, SIGPIPE, SIGALRM, SIGTERM, SIGUSR1, SIGUSR2,
                             SIGXCPU, SIGXFSZ, SIGVTALRM, SIGPROF}) {
        const int status = inChild([&] {
            prctl(PR_SET_DUMPABLE, 0);
            removeTemporaryFilesOnSignals();
            const TemporaryFile one(directory);
            const TemporaryFile two(directory);
            raise(signal);
        });
        EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == signal) << "signal " << signal;
        EXPECT_EQ(files(), std::set<std::string>()) << "signal " << signal;
    }
}

TEST_F(Output, aSignalThatIsIgnoredStaysIgnored)
{
    for (const int signal : {SIGHUP, SIGINT, SIGPIPE, SIGUSR1}) {
        const int status = inChild([&] {
            std::signal(signal, SIG_IGN);
            removeTemporaryFilesOnSignals();
            raise(signal);
        });
        EXPECT_EQ(status, 0) << "signal " << signal;
    }
}

/* ---- Without unnamed files ---------------------------------------------- */

TEST_F(Output, withoutUnnamedFilesAFileIsStillReplacedCompletely)
{
    if (!canRefuseNamelessFiles())
        GTEST_SKIP() << "no seccomp here";
    put("old");
    const int status = inChild([&] {
        refuseNamelessFiles();
        OutputFile output(file);
        write(output, "new");
        if (content() != "old" || files().size() != 2)
            _exit(1);
        output.commit();
    });
    EXPECT_EQ(status, 0);
    EXPECT_EQ(content(), "new");
    EXPECT_EQ(files(), std::set<std::string>{"file"});
}

TEST_F(Output, withoutUnnamedFilesASignalLeavesNoTemporaryFile)
{
    if (!canRefuseNamelessFiles())
        GTEST_SKIP() << "no seccomp here";
    put("old");
    const int status = inChild([&] {
        refuseNamelessFiles();
        removeTemporaryFilesOnSignals();
        OutputFile output(file);
        write(output, "new");
        raise(SIGTERM);
    });
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM);
    EXPECT_EQ(content(), "old");
    EXPECT_EQ(files(), std::set<std::string>{"file"});
}

/* ---- Owners ------------------------------------------------------------- */

constexpr uid_t someUser = 12345;
constexpr gid_t someGroup = 54321;

TEST_F(Output, aReplacedFileKeepsItsOwnerAndMode)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "only root may give a file to another";
    put("old");
    ASSERT_EQ(chown(file.c_str(), someUser, someGroup), 0);
    ASSERT_EQ(chmod(file.c_str(), 04751), 0);
    OutputFile output(file);
    write(output, "new");
    output.commit();
    struct stat status = {};
    ASSERT_EQ(stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, someUser);
    EXPECT_EQ(status.st_gid, someGroup);
    EXPECT_EQ(status.st_mode & 07777, 04751u);
    EXPECT_EQ(content(), "new");
}

TEST_F(Output, anOwnerThatCannotBeKeptIsReported)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "only root may become another user";
    put("old");
    ASSERT_EQ(chmod(file.c_str(), 06666), 0);
    ASSERT_EQ(chmod(directory.c_str(), 0777), 0);
    testing::internal::CaptureStderr();
    const int status = inChild([&] {
        if (setgid(someGroup) != 0 || setuid(someUser) != 0)
            _exit(1);
        OutputFile output(file);
        write(output, "new");
        output.commit();
    });
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "algdata: the owner of " + file + " changes from 0:0 to 12345:54321\n");
    EXPECT_EQ(status, 0);
    struct stat replaced = {};
    ASSERT_EQ(stat(file.c_str(), &replaced), 0);
    EXPECT_EQ(replaced.st_mode & 07777, 0606u);
}

TEST_F(Output, aFileThatMayNotBeWrittenIsNotReplaced)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "only root may become another user";
    put("old");
    ASSERT_EQ(chmod(directory.c_str(), 0777), 0);
    const int status = inChild([&] {
        if (setuid(someUser) != 0)
            _exit(1);
        try {
            const OutputFile output(file);
        } catch (const OutputFailure& failure) {
            _exit(failure.what() == "cannot write " + file + ": Permission denied" ? 7 : 1);
        }
    });
    EXPECT_EQ(WEXITSTATUS(status), 7);
    EXPECT_EQ(content(), "old");
}

} // namespace
