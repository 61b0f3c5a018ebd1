#include "platform/child_process.h"

#include "platform/file_descriptor.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <thread>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>

#ifdef __APPLE__
#include <crt_externs.h>
#define environ (*_NSGetEnviron())
#else
extern char** environ;
#endif

namespace velmora
{
namespace
{

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds stopCheckInterval{50};
constexpr milliseconds graceBeforeKill{2000};
/// After the kill only a process that left the group can still hold the pipes: it is not waited for.
constexpr milliseconds drainAfterKill{200};

struct Pipe {
    FileDescriptor read{};
    FileDescriptor write{};
};

/// Moves a descriptor beyond the standard ones: with one of those closed in this process, a pipe could land there and
/// the child's redirections would overwrite each other.
FileDescriptor aboveStandard(FileDescriptor descriptor)
{
    if (descriptor.get() > STDERR_FILENO)
        return descriptor;
    return FileDescriptor(::fcntl(descriptor.get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

/// False, with errno set, when the system has no more descriptors.
bool openPipe(Pipe& result)
{
    std::array<int, 2> ends{};
#ifdef __APPLE__
    if (::pipe(ends.data()) != 0)
        return false;
    for (const int end : ends)
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
#else
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        return false;
#endif
    result.read = FileDescriptor(ends[0]);
    result.write = FileDescriptor(ends[1]);
    result.read = aboveStandard(std::move(result.read));
    result.write = aboveStandard(std::move(result.write));
    return result.read && result.write;
}

void setNonBlocking(const FileDescriptor& descriptor)
{
    ::fcntl(descriptor.get(), F_SETFL, ::fcntl(descriptor.get(), F_GETFL) | O_NONBLOCK);
}

/// Keeps a write to a closed pipe from ending this process, without touching how the process treats the signal: it is
/// blocked for this thread alone, and the one that our own write raised is taken back.
class BrokenPipeGuard
{
public:
    BrokenPipeGuard()
    {
        sigset_t pending{};
        ::sigpending(&pending);
        m_wasPending = sigismember(&pending, SIGPIPE) == 1;
        ::sigemptyset(&m_signal);
        ::sigaddset(&m_signal, SIGPIPE);
        ::pthread_sigmask(SIG_BLOCK, &m_signal, &m_oldMask);
    }
    BrokenPipeGuard(const BrokenPipeGuard&) = delete;
    BrokenPipeGuard& operator=(const BrokenPipeGuard&) = delete;
    ~BrokenPipeGuard()
    {
        sigset_t pending{};
        ::sigpending(&pending);
        if (!m_wasPending && sigismember(&pending, SIGPIPE) == 1) {
#ifdef __APPLE__
            int taken = 0;
            ::sigwait(&m_signal, &taken);
#else
            const timespec atOnce{};
            ::sigtimedwait(&m_signal, nullptr, &atOnce);
#endif
        }
        ::pthread_sigmask(SIG_SETMASK, &m_oldMask, nullptr);
    }

private:
    sigset_t m_signal{};
    sigset_t m_oldMask{};
    bool m_wasPending = false;
};

/// What posix_spawn is told beside the program.
class SpawnSettings
{
public:
    SpawnSettings()
    {
        posix_spawn_file_actions_init(&m_actions);
        posix_spawnattr_init(&m_attributes);
        sigset_t signals{};
        ::sigfillset(&signals);
        posix_spawnattr_setsigdefault(&m_attributes, &signals);
        ::sigemptyset(&signals);
        posix_spawnattr_setsigmask(&m_attributes, &signals);
        posix_spawnattr_setpgroup(&m_attributes, 0);
        short flags = POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETPGROUP;
#ifdef __APPLE__
        flags |= POSIX_SPAWN_CLOEXEC_DEFAULT;
#endif
        posix_spawnattr_setflags(&m_attributes, flags);
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;
    ~SpawnSettings()
    {
        posix_spawn_file_actions_destroy(&m_actions);
        posix_spawnattr_destroy(&m_attributes);
    }

    /// Connects the child's standard descriptors; `input` may be none, which leaves the inherited one.
    void connect(const FileDescriptor& input, const FileDescriptor& output, const FileDescriptor& error)
    {
        if (input)
            posix_spawn_file_actions_adddup2(&m_actions, input.get(), STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&m_actions, output.get(), STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&m_actions, error.get(), STDERR_FILENO);
#ifdef __APPLE__
        if (!input)
            posix_spawn_file_actions_addinherit_np(&m_actions, STDIN_FILENO);
#elif defined(__GLIBC__) && __GLIBC_PREREQ(2, 34)
        // Descriptors that some library opened without close-on-exec do not reach the child either.
        posix_spawn_file_actions_addclosefrom_np(&m_actions, STDERR_FILENO + 1);
#endif
    }

    /// Starts the program; returns an error number, 0 for success.
    int spawn(pid_t& child, const ChildRequest& request) const
    {
        // posix_spawn takes pointers to mutable text but, being an exec, never writes to it.
        std::vector<char*> arguments{const_cast<char*>(request.program.c_str())};
        for (const std::string& argument : request.arguments)
            arguments.push_back(const_cast<char*>(argument.c_str()));
        arguments.push_back(nullptr);
        return ::posix_spawn(&child, request.program.c_str(), &m_actions, &m_attributes, arguments.data(), environ);
    }

private:
    posix_spawn_file_actions_t m_actions{};
    posix_spawnattr_t m_attributes{};
};

/// A running child from start to reaping. It stays a zombie until reap(), so that its process group's number cannot be
/// given to somebody else while it may still be signalled.
class RunningChild
{
public:
    RunningChild(pid_t pid, FileDescriptor input, FileDescriptor output, FileDescriptor error,
                 const ChildRequest& request)
        : m_pid(pid),
          m_input(std::move(input)),
          m_output(std::move(output)),
          m_error(std::move(error)),
          m_request(request)
    {
    }

    /// Serves the pipes until both outputs have ended and the child has exited, or a stop has been carried out.
    void serve(ChildResult& result)
    {
        milliseconds pause{1};
        while (m_output || m_error || !hasExited()) {
            if (!followStop())
                break;
            if (m_output || m_error || m_input) {
                exchange(result);
            } else {
                // It has closed its ends and works on, or is just about to be gone.
                std::this_thread::sleep_for(pause);
                pause = std::min(pause * 2, stopCheckInterval);
            }
        }
    }

    int reap()
    {
        if (m_termSent)
            ::kill(-m_pid, SIGKILL);
        int status = 0;
        if (retryInterrupted([&] { return ::waitpid(m_pid, &status, 0); }) < 0)
            return -1;
        return WIFSIGNALED(status) ? WTERMSIG(status) : WEXITSTATUS(status);
    }

private:
    [[nodiscard]] bool hasExited() const
    {
        siginfo_t info{};
        const int answer = ::waitid(P_PID, static_cast<id_t>(m_pid), &info, WEXITED | WNOHANG | WNOWAIT);
        return (answer == 0 && info.si_pid == m_pid) || (answer < 0 && errno == ECHILD);
    }

    /// Sends what a requested stop calls for; false when there is nothing left to wait for.
    bool followStop()
    {
        if (!m_request.stop.stopRequested())
            return true;
        const auto now = Clock::now();
        if (!m_termSent) {
            ::kill(-m_pid, SIGTERM);
            m_termSent = true;
            m_killAt = now + graceBeforeKill;
        } else if (!m_killSent && now >= m_killAt) {
            ::kill(-m_pid, SIGKILL);
            m_killSent = true;
        }
        return !m_killSent || now < m_killAt + drainAfterKill;
    }

    /// Waits until a pipe is ready or it is time to look at the stop token again, and moves bytes.
    void exchange(ChildResult& result)
    {
        std::array<pollfd, 3> files{
            {{m_output.get(), POLLIN, 0}, {m_error.get(), POLLIN, 0}, {m_input.get(), POLLOUT, 0}}};
        if (::poll(files.data(), files.size(), static_cast<int>(stopCheckInterval.count())) <= 0)
            return;
        if (files[0].revents != 0)
            readFrom(m_output, result.output);
        if (files[1].revents != 0)
            readFrom(m_error, result.error);
        if (files[2].revents != 0)
            writeInput();
    }

    static void readFrom(FileDescriptor& source, std::string& target)
    {
        std::array<char, 65536> buffer{};
        const ssize_t count = ::read(source.get(), buffer.data(), buffer.size());
        if (count > 0)
            target.append(buffer.data(), static_cast<std::size_t>(count));
        else if (count == 0 || (errno != EINTR && errno != EAGAIN))
            source.close();
    }

    void writeInput()
    {
        const std::string& input = *m_request.input;
        const ssize_t count = ::write(m_input.get(), input.data() + m_written, input.size() - m_written);
        if (count > 0)
            m_written += static_cast<std::size_t>(count);
        const bool failed = count < 0 && errno != EINTR && errno != EAGAIN;
        if (failed || m_written == input.size())
            m_input.close();
    }

    pid_t m_pid;
    FileDescriptor m_input;
    FileDescriptor m_output;
    FileDescriptor m_error;
    const ChildRequest& m_request;
    std::size_t m_written = 0;
    bool m_termSent = false;
    bool m_killSent = false;
    Clock::time_point m_killAt{};
};

bool containsNul(const ChildRequest& request)
{
    bool found = request.program.find('\0') != std::string::npos;
    for (const std::string& argument : request.arguments)
        found = found || argument.find('\0') != std::string::npos;
    return found;
}

} // namespace

ChildResult runChild(const ChildRequest& request)
{
    ChildResult result;
    // The system would silently cut the text there, and another program or file would be meant.
    if (containsNul(request)) {
        result.launchError = "A path or argument contains a NUL byte";
        return result;
    }
    Pipe input;
    Pipe output;
    Pipe error;
    if ((request.input && !openPipe(input)) || !openPipe(output) || !openPipe(error)) {
        result.launchError = systemErrorText(errno);
        return result;
    }
    SpawnSettings settings;
    settings.connect(input.read, output.write, error.write);
    pid_t pid = -1;
    if (const int code = settings.spawn(pid, request); code != 0) {
        result.launchError = systemErrorText(code);
        return result;
    }
    result.started = true;
    input.read.close();
    output.write.close();
    error.write.close();
    if (request.input) {
        setNonBlocking(input.write);
        if (request.input->empty())
            input.write.close();
    }
    const BrokenPipeGuard guard;
    RunningChild child(pid, std::move(input.write), std::move(output.read), std::move(error.read), request);
    child.serve(result);
    result.exitCode = child.reap();
    return result;
}

} // namespace velmora
