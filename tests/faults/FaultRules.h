#pragma once

#include <string>

struct sockaddr;

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

/// Decides about a call by the rules in the variable ORLIMO_FAULTS, which are separated by
/// semicolons. A rule is four words: the call, its target as a pattern for fnmatch(3), how
/// it fails (the name of an error number, "part" or "nothing"), and how often: "always", or how
/// many times. Calls with the same meaning share a name; a lock that is set is "lock", one that is
/// asked for "asklock".
///
/// Where the variable ORLIMO_FAULTS_SWITCH names a file, the rules count only while it exists. Each
/// call that is made to fail becomes a line "call target" in the file that ORLIMO_FAULTS_RECORD
/// names. From any thread.
Fault faultOf(const char* call, const std::string& target);

/// What a descriptor leads to: the path of a file or a socket, "stdout" for standard output, else
/// what the kernel calls it.
std::string targetOf(int descriptor);
std::string targetOf(const char* path);
inline std::string targetOf(const std::string& name)
{
    return name;
}

/// The path of a socket's address; one without a file begins with "@". Empty for other kinds.
std::string nameOf(const sockaddr* address, unsigned length);

} // namespace orlimo
