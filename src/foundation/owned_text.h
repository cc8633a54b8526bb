// The one type of text that a record owns: zero-terminated bytes in an allocation of its own, or none at all (null is
// a value and differs from an empty text). Move only; frees itself. Not for texts inside a function: use std::string.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>

class OwnedText {
  public:
    OwnedText() = default;
    // A zero-filled allocation of `size` bytes (at least length + 1) that begins with `text`; null when memory is
    // short.
    static OwnedText Copy(std::string_view text, std::size_t size = 0) {
        OwnedText copy;
        const std::size_t needed = text.size() + 1;
        copy.text_.reset(static_cast<char*>(std::calloc(size > needed ? size : needed, 1)));
        if (copy.text_ != nullptr && !text.empty()) std::memcpy(copy.text_.get(), text.data(), text.size());
        return copy;
    }

    const char* get() const { return text_.get(); }
    char* data() { return text_.get(); }
    // The text, or an empty one when there is none.
    const char* c_str() const { return text_ ? text_.get() : ""; }
    std::string_view view() const { return c_str(); }
    bool empty() const { return !text_ || *text_ == '\0'; }
    explicit operator bool() const { return text_ != nullptr; }
    void reset() { text_.reset(); }

  private:
    struct Free {
        void operator()(char* text) const { std::free(text); }
    };
    std::unique_ptr<char, Free> text_;
};
