#include <Qel/Util/Platform.h>

#include <bit>
#include <limits>

#if defined(_WIN32)
#include <io.h>
#include <windows.h>
#else
#include <pwd.h>
#include <sys/types.h>
#include <unistd.h>

#include <array>
#endif

namespace QelUtil::Platform {

// Values go into the file as they lie in memory, and the file is little-endian.
static_assert(std::endian::native == std::endian::little,
              "moxwriter supports little-endian machines alone; see docs/platforms.md");
static_assert(std::numeric_limits<float>::is_iec559 && std::numeric_limits<double>::is_iec559,
              "moxwriter needs the floating-point numbers of IEC 559");

#if defined(_WIN32)

namespace {
constexpr DWORD NameBufferSize = 80;
}

bool pathExists(const std::string& path) {
    return _access(path.c_str(), 0) == 0;
}

bool seekTo(std::FILE* stream, std::uint64_t offset) {
    return stream != nullptr && _fseeki64(stream, static_cast<long long>(offset), SEEK_SET) == 0;
}

std::tm localTime(std::time_t time) {
    // Only this call makes a time zone take effect that the application has set since the process began.
    _tzset();
    std::tm result{};
    localtime_s(&result, &time);
    return result;
}

std::string computerName() {
    char name[NameBufferSize];
    DWORD size = NameBufferSize;
    return GetComputerNameA(name, &size) != 0 ? name : "";
}

std::string userName() {
    char name[NameBufferSize];
    DWORD size = NameBufferSize;
    return GetUserNameA(name, &size) != 0 ? name : "";
}

#else

namespace {
constexpr std::size_t NameBufferSize = 80;
}

bool pathExists(const std::string& path) {
    return access(path.c_str(), F_OK) == 0;
}

bool seekTo(std::FILE* stream, std::uint64_t offset) {
    static_assert(sizeof(off_t) == sizeof(std::uint64_t));
    return stream != nullptr && fseeko(stream, static_cast<off_t>(offset), SEEK_SET) == 0;
}

std::tm localTime(std::time_t time) {
    // Only this call makes a time zone take effect that the application has set since the process began.
    tzset();
    std::tm result{};
    localtime_r(&time, &result);
    return result;
}

std::string computerName() {
    std::array<char, NameBufferSize> name{};
    return gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "";
}

std::string userName() {
    const passwd* const user = getpwuid(geteuid());
    return user != nullptr ? std::string(user->pw_name).substr(0, NameBufferSize - 1) : std::string();
}

#endif

} // namespace QelUtil::Platform
