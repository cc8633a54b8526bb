// Reads a meaning out of a text by the first marker that it contains. For replies whose wording differs from server to
// server; case is the caller's business.
#pragma once

#include <cstddef>
#include <string_view>

template <class Meaning>
struct TextMarker {
    std::string_view text;
    Meaning meaning;
};

// The meaning of the first marker, in the table's order, that `text` contains; `otherwise` when there is none.
template <class Meaning, std::size_t count>
Meaning MeaningOf(std::string_view text, const TextMarker<Meaning> (&markers)[count], Meaning otherwise) {
    for (const TextMarker<Meaning>& marker : markers) {
        if (text.find(marker.text) != std::string_view::npos) return marker.meaning;
    }
    return otherwise;
}
