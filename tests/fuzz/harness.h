// What the fuzz harnesses share. A harness is one function that takes any bytes, hands them to a reader of foreign text
// and requires what must hold whatever the bytes were. The same function runs under libFuzzer (fuzz_entry.cpp) and over
// the kept inputs in the ordinary tests (replay.cpp). No harness knows which of the two it runs in.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

// Says what did not hold and ends the program, which both runners report with the input.
#define REQUIRE_THAT(condition) RequireThat((condition), #condition, __FILE__, __LINE__)
void RequireThat(bool holds, const char* condition, const char* file, int line);
// Warnings that the tried functions write to the error stream are no findings; they go nowhere from now on.
void SilenceTraces();

// Takes an input apart from its front; past its end every number is 0 and every text empty.
class FuzzInput {
  public:
    explicit FuzzInput(std::string_view bytes) : rest_(bytes) {}
    std::uint8_t Byte();
    // Up to the next `end`, which is dropped; the rest when there is none.
    std::string_view TextUntil(char end);
    std::string_view Take(std::size_t count);
    std::string_view Rest() const { return rest_; }
    bool AtEnd() const { return rest_.empty(); }

  private:
    std::string_view rest_;
};

// Fixed steps of a generator without state elsewhere, for choices that need no byte of the input.
inline std::uint32_t NextChoice(std::uint32_t& state) {
    state = state * 1664525u + 1013904223u;
    return state >> 16;
}

bool IsUtf8(std::string_view text);

// The harnesses; each has its inputs in corpus/NAME.
void FuzzReplyReader(std::string_view input);
void FuzzReplyStream(std::string_view input);
void FuzzPwdPath(std::string_view input);
void FuzzUnixParser(std::string_view input);
void FuzzNtParser(std::string_view input);
void FuzzListing(std::string_view input);
void FuzzLinkTarget(std::string_view input);
void FuzzLocalPath(std::string_view input);
void FuzzDestination(std::string_view input);
void FuzzMessages(std::string_view input);
void FuzzPassword(std::string_view input);
