#include "foundation/path_ellipsis.h"

#include "foundation/trace.h"

namespace {

// "%c...%c" between what is left of the front and the last component.
std::string Join(std::string_view front, char separator, std::string_view last) {
    std::string text(front);
    text += separator;
    text += "...";
    text += separator;
    text += last;
    return text;
}

}  // namespace

std::string Zarn_TuncateAndAddEllipses(std::string_view path, int width, const MeasureText& measure) {
    static constexpr char kFuncName[] = "Zarn_TuncateAndAddEllipses";
    DbgVsprintf(kFuncName, "Entered");
    const int needed = measure(path);
    if (needed <= width) return std::string(path);
    DbgVsprintf(kFuncName, "String x:%d will NOT fit in Window x:%d", needed, width);

    const std::size_t last = path.find_last_of("/\\");
    if (last == std::string_view::npos) {
        DbgVsprintf(kFuncName, "ERROR. String doesn't have a path Separator. Returning NULL");
        return {};
    }
    const char separator = path[last];
    const std::string_view lastComponent = path.substr(last + 1);
    std::string_view front = path.substr(0, last);
    std::string text = Join(front, separator, lastComponent);
    for (std::size_t cut = front.rfind(separator); cut != std::string_view::npos; cut = front.rfind(separator)) {
        front = front.substr(0, cut);
        text = Join(front, separator, lastComponent);
        if (measure(text) <= width) break;
    }
    DbgVsprintf(kFuncName, "Done. Returning %s", text.c_str());
    return text;
}
