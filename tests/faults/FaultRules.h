#pragma once

#include <array>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <string>
#include <string_view>

#include <fcntl.h>
#include <fnmatch.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <unistd.h>

namespace orlimo {

/// How one system call is to fail.
struct Fault
{
    enum class Kind {
        none,
        error,   ///< fails with `error`
        part,    ///< carries out a part of its work
        nothing, ///< carries out none, and reports success
    };

    Kind kind = Kind::none;
    int error = 0;
};

inline constexpr int always = -1;

struct Rule
{
    std::string call;
    std::string target;
    Fault fault;
    /// How many calls it may still meet, or `always`.
    std::atomic<int> left = always;
};

inline std::string variable(const char* name)
{
    const char* const value = std::getenv(name); // NOLINT(concurrency-mt-unsafe): never set here
    return value == nullptr ? "" : value;
}

inline Fault faultNamed(const std::string& name)
{
    if (name == "part") {
        return {Fault::Kind::part, 0};
    }
    if (name == "nothing") {
        return {Fault::Kind::nothing, 0};
    }
    constexpr int moreThanThereAre = 200;
    for (int error = 1; error < moreThanThereAre; ++error) {
        const char* const known = ::strerrorname_np(error);
        if (known != nullptr && name == known) {
            return {Fault::Kind::error, error};
        }
    }
    // A rule that nobody understands would be a test of nothing.
    std::abort();
}

/// Every rule. Never taken down: calls come to the very end of the process.
inline std::array<Rule, 8>& rules()
{
    static auto* const all = [] {
        auto* const read = new std::array<Rule, 8>;
        std::istringstream text(variable("ORLIMO_FAULTS"));
        std::string line;
        for (std::size_t index = 0; std::getline(text, line, ';'); ++index) {
            std::istringstream words(line);
            std::string fault;
            std::string times;
            Rule& rule = read->at(index);
            if (!(words >> rule.call >> rule.target >> fault >> times)) {
                std::abort();
            }
            rule.fault = faultNamed(fault);
            rule.left = times == "always" ? always : std::stoi(times);
        }
        return read;
    }();
    return *all;
}

inline bool isSwitchedOn()
{
    static const auto* const file = new std::string(variable("ORLIMO_FAULTS_SWITCH"));
    // Past the C library, whose functions are the ones that are replaced.
    return file->empty() || ::syscall(SYS_faccessat, AT_FDCWD, file->c_str(), F_OK) == 0;
}

/// Whether the rule may meet one call more; counts it.
inline bool consumeUse(Rule& rule)
{
    int left = rule.left;
    while (left != always) {
        if (left == 0) {
            return false;
        }
        if (rule.left.compare_exchange_weak(left, left - 1)) {
            return true;
        }
    }
    return true;
}

inline void record(const char* call, const std::string& target)
{
    static const auto* const file = new std::string(variable("ORLIMO_FAULTS_RECORD"));
    const std::string line = std::string(call) + " " + target + "\n";
    const long descriptor = ::syscall(
        SYS_openat, AT_FDCWD, file->c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0666);
    if (descriptor >= 0) {
        (void)::syscall(SYS_write, descriptor, line.data(), line.size());
        (void)::syscall(SYS_close, descriptor);
    }
}

/// The path of a socket's address; one without a file begins with "@". Empty for other kinds.
inline std::string nameOf(const sockaddr* address, unsigned length)
{
    constexpr std::size_t before = offsetof(sockaddr_un, sun_path);
    if (address == nullptr || address->sa_family != AF_UNIX || length <= before) {
        return "";
    }
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): as the interface requires
    const char* const path = reinterpret_cast<const sockaddr_un*>(address)->sun_path;
    return *path == '\0' ? "@" + std::string(path + 1, length - before - 1) : std::string(path);
}

/// The path of the socket's other end.
inline std::string peerOf(int descriptor)
{
    sockaddr_un address{};
    socklen_t length = sizeof address;
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): as the interface requires
    auto* const general = reinterpret_cast<sockaddr*>(&address);
    return ::getpeername(descriptor, general, &length) == 0 ? nameOf(general, length) : "";
}

/// Decides about a call by the rules in the variable ORLIMO_FAULTS, which are separated by
/// semicolons. A rule is four words: the call, its target as a pattern for fnmatch(3), how
/// it fails (the name of an error number, "part" or "nothing"), and how often: "always", or how
/// many times. Calls with the same meaning share a name; a lock that is set is "lock", one that is
/// asked for "asklock".
///
/// Where the variable ORLIMO_FAULTS_SWITCH names a file, the rules count only while it exists. Each
/// call that is made to fail becomes a line "call target" in the file that ORLIMO_FAULTS_RECORD
/// names. From any thread.
inline Fault faultOf(const char* call, const std::string& target)
{
    const int errorBefore = errno;
    Fault fault;
    for (Rule& rule : rules()) {
        if (rule.call == call && ::fnmatch(rule.target.c_str(), target.c_str(), 0) == 0 &&
            isSwitchedOn() && consumeUse(rule))
        {
            record(call, target);
            fault = rule.fault;
            break;
        }
    }
    errno = errorBefore;
    return fault;
}

/// What a descriptor leads to: the path of a file or a socket, "stdout" for standard output, else
/// what the kernel calls it.
inline std::string targetOf(int descriptor)
{
    if (descriptor == STDOUT_FILENO) {
        return "stdout";
    }
    const int errorBefore = errno;
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    std::array<char, 4096> name{};
    const long length = ::syscall(SYS_readlinkat, AT_FDCWD, link.c_str(), name.data(), name.size());
    std::string target(name.data(), length < 0 ? 0 : static_cast<std::size_t>(length));
    if (target.starts_with("socket:")) {
        target = peerOf(descriptor);
    }
    errno = errorBefore;
    return target;
}

inline std::string targetOf(const char* path)
{
    constexpr std::string_view ownDescriptor = "/proc/self/fd/";
    const std::string target = path == nullptr ? "" : path;
    return target.starts_with(ownDescriptor)
               ? targetOf(std::atoi(target.c_str() + ownDescriptor.size()))
               : target;
}

inline std::string targetOf(const std::string& name)
{
    return name;
}

} // namespace orlimo
