#include "foundation/clipboard.h"

#include "traced_test.h"

namespace {

class Clipboard : public TracedTest {};

TEST_F(Clipboard, ClipboardNeverHasFiles) {
    TraceToConsole();
    EXPECT_FALSE(ClipHasFiles());
    EXPECT_TRUE(view.HasLine("ClipHasFiles() Entered"));
}

}  // namespace
