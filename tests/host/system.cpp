#include "platform/system.h"

#include <langinfo.h>
#include <locale.h>
#include <pwd.h>
#include <unistd.h>
#include <wctype.h>

#include <climits>
#include <cstdio>

#include "platform/utf8.h"
#include "recorded_calls.h"

namespace platform {
namespace {

struct ErrorText {
    std::uint32_t error;
    const char* text;
};

constexpr ErrorText kErrorTexts[] = {
    {0, "The operation completed successfully."},
    {2, "The system cannot find the file specified."},
    {3, "The system cannot find the path specified."},
    {5, "Access is denied."},
    {6, "The handle is invalid."},
    {8, "Not enough storage is available to process this command."},
    {32, "The process cannot access the file because it is being used by another process."},
    {80, "The file exists."},
    {87, "The parameter is incorrect."},
    {112, "There is not enough space on the disk."},
    {122, "The data area passed to a system call is too small."},
    {123, "The filename, directory name, or volume label syntax is incorrect."},
    {145, "The directory is not empty."},
    {183, "Cannot create a file when that file already exists."},
    {206, "The filename or extension is too long."},
    {267, "The directory name is invalid."},
    {995, "The I/O operation has been aborted because of either a thread exit or an application request."},
    {1814, "The specified resource name cannot be found in the image file."},
    {10038, "An operation was attempted on something that is not a socket."},
    {10048, "Only one usage of each socket address (protocol/network address/port) is normally permitted."},
    {10053, "An established connection was aborted by the software in your host machine."},
    {10054, "An existing connection was forcibly closed by the remote host."},
    {10061, "No connection could be made because the target machine actively refused it."},
    {11001, "No such host is known."},
};

// The bit that programs set in numbers of their own; the system has no text for those.
constexpr std::uint32_t kOwnErrorBit = 1u << 29;

// Code page 1252, bytes 80 to 9F; the rest is as in Latin-1.
constexpr char32_t kWesternPage[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

// Base letters of U+00E0 to U+00FF, so that accented names sort among their neighbours.
constexpr char kBaseLetters[] = "aaaaaaaceeeeiiiidnooooo/ouuuuyty";

locale_t CharacterLocale() {
    static const locale_t locale = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    return locale;
}

char32_t Lower(char32_t character) {
    return static_cast<char32_t>(::towlower_l(static_cast<wint_t>(character), CharacterLocale()));
}

// Weight of a character in word-sort order: signs, digits, letters; 0 for those that words may hold.
char32_t SortWeight(char32_t character) {
    if (character == '-' || character == '\'') return 0;
    char32_t lower = Lower(character);
    if (lower >= 0xE0 && lower <= 0xFF) lower = static_cast<unsigned char>(kBaseLetters[lower - 0xE0]);
    if (::iswalpha_l(static_cast<wint_t>(lower), CharacterLocale())) return 0x400000 + lower;
    if (lower >= '0' && lower <= '9') return 0x200000 + lower;
    return 1 + lower;
}

// The next weight that counts; 0 at the end.
char32_t NextWeight(std::string_view& text) {
    while (!text.empty()) {
        const CodePoint next = ReadCodePoint(text);
        text.remove_prefix(next.length);
        if (const char32_t weight = SortWeight(next.value)) return weight;
    }
    return 0;
}

// Lowered and without the characters that have no weight: what tells accented letters from plain ones.
std::string WithoutCase(std::string_view text) {
    std::string lower = LocaleLower(text);
    std::erase_if(lower, [](char character) { return character == '-' || character == '\''; });
    return lower;
}

int Sign(int number) {
    return number < 0 ? -1 : number > 0 ? 1 : 0;
}

}  // namespace

std::string SystemErrorText(std::uint32_t error) {
    for (const ErrorText& entry : kErrorTexts) {
        if (entry.error == error) return entry.text;
    }
    if ((error & kOwnErrorBit) != 0) return {};
    return "Error " + std::to_string(error);
}

void WriteDebugger(const char* text) {
    std::fputs(text, stderr);
}

std::string UserName() {
    const passwd* entry = ::getpwuid(::getuid());
    return entry == nullptr ? std::string() : entry->pw_name;
}

std::string ProgramPath() {
    char path[PATH_MAX];
    const ssize_t length = ::readlink("/proc/self/exe", path, sizeof path);
    return length <= 0 ? std::string() : std::string(path, static_cast<std::size_t>(length));
}

void PlayBeep(Beep beep) {
    recorded_calls::Recording::AddBeep(beep);
}

std::string SystemPageToUtf8(std::string_view bytes) {
    std::string text;
    for (const char character : bytes) {
        const auto byte = static_cast<unsigned char>(character);
        AppendUtf8(text, byte >= 0x80 && byte < 0xA0 ? kWesternPage[byte - 0x80] : byte);
    }
    return text;
}

std::string LocaleLower(std::string_view text) {
    std::string lower;
    while (!text.empty()) {
        const CodePoint next = ReadCodePoint(text);
        text.remove_prefix(next.length);
        AppendUtf8(lower, Lower(next.value));
    }
    return lower;
}

// An approximation of the Windows order for names in western letters: good enough for the rules that sort by it.
int LocaleCompare(std::string_view a, std::string_view b) {
    std::string_view restA = a;
    std::string_view restB = b;
    for (;;) {
        const char32_t weightA = NextWeight(restA);
        const char32_t weightB = NextWeight(restB);
        if (weightA != weightB) return weightA < weightB ? -1 : 1;
        if (weightA == 0) break;
    }
    const int accents = WithoutCase(a).compare(WithoutCase(b));
    if (accents != 0) return Sign(accents);
    // Only case and hyphens differ: small letters come first, and they have the greater numbers.
    return Sign(b.compare(a));
}

}  // namespace platform
