#include "ui/commands/toolbar_images.h"

#include <algorithm>
#include <utility>

#include "ui/screen/image_scale.h"

namespace {

constexpr int kSmallPicture = 16;  // pixels; the two sizes that the system has
constexpr int kLargePicture = 24;

HIMAGELIST gScaled = nullptr;

// A square bitmap for the system to draw into.
class Canvas {
  public:
    explicit Canvas(int side) : side_(side), dc_(CreateCompatibleDC(nullptr)) {
        BITMAPINFO info{};
        info.bmiHeader.biSize = sizeof(info.bmiHeader);
        info.bmiHeader.biWidth = side;
        info.bmiHeader.biHeight = -side;  // rows from top to bottom
        info.bmiHeader.biPlanes = 1;
        info.bmiHeader.biBitCount = 32;
        void* bits = nullptr;
        bitmap_ = CreateDIBSection(dc_, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
        bits_ = static_cast<std::uint32_t*>(bits);
        before_ = SelectObject(dc_, bitmap_);
    }
    ~Canvas() {
        Deselect();
        DeleteObject(bitmap_);
        DeleteDC(dc_);
    }
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    bool IsThere() const { return bits_ != nullptr; }
    Pixels DrawnOn(HIMAGELIST images, int index, int ground) const {
        PatBlt(dc_, 0, 0, side_, side_, static_cast<DWORD>(ground));
        ImageList_Draw(images, index, dc_, 0, 0, ILD_TRANSPARENT);
        GdiFlush();
        return Pixels(bits_, bits_ + side_ * side_);
    }
    HBITMAP With(const Pixels& pixels) {
        std::copy(pixels.begin(), pixels.end(), bits_);
        Deselect();
        return bitmap_;
    }

  private:
    void Deselect() {
        if (before_ != nullptr) SelectObject(dc_, std::exchange(before_, nullptr));
    }
    int side_;
    HDC dc_;
    HBITMAP bitmap_ = nullptr;
    HGDIOBJ before_ = nullptr;
    std::uint32_t* bits_ = nullptr;
};

bool AddScaled(HIMAGELIST to, HIMAGELIST from, int index, int fromSide, int toSide) {
    const Canvas drawn(fromSide);
    Canvas scaled(toSide);
    if (!drawn.IsThere() || !scaled.IsThere()) return false;
    const Pixels onBlack = drawn.DrawnOn(from, index, BLACKNESS);
    const Pixels onWhite = drawn.DrawnOn(from, index, WHITENESS);
    const Pixels pixels = ScaledSquare(PixelsFromGrounds(onBlack, onWhite), fromSide, toSide);
    return ImageList_Add(to, scaled.With(pixels), nullptr) >= 0;
}

HIMAGELIST ScaledImages(HIMAGELIST from, int fromSide, int toSide) {
    const int count = ImageList_GetImageCount(from);
    HIMAGELIST images = ImageList_Create(toSide, toSide, ILC_COLOR32 | ILC_MASK, count, 0);
    for (int i = 0; images != nullptr && i < count; ++i) {
        if (AddScaled(images, from, i, fromSide, toSide)) continue;
        ImageList_Destroy(images);
        return nullptr;
    }
    return images;
}

// Adds a standard set to the bar; returns the index of its first picture.
int AddSet(HWND toolbar, UINT set) {
    TBADDBITMAP bitmap{HINST_COMMCTRL, set};
    return static_cast<int>(SendMessageW(toolbar, TB_ADDBITMAP, 0, reinterpret_cast<LPARAM>(&bitmap)));
}

}  // namespace

ToolbarImages AddToolbarImages(HWND toolbar, UINT dpi) {
    const int wanted = MulDiv(kSmallPicture, static_cast<int>(dpi), USER_DEFAULT_SCREEN_DPI);
    const bool large = wanted > kSmallPicture;
    const int side = large ? kLargePicture : kSmallPicture;
    ToolbarImages images;
    images.standard = AddSet(toolbar, large ? IDB_STD_LARGE_COLOR : IDB_STD_SMALL_COLOR);
    images.view = AddSet(toolbar, large ? IDB_VIEW_LARGE_COLOR : IDB_VIEW_SMALL_COLOR);
    const auto own = reinterpret_cast<HIMAGELIST>(SendMessageW(toolbar, TB_GETIMAGELIST, 0, 0));
    if (wanted == side || own == nullptr) return images;
    HIMAGELIST scaled = ScaledImages(own, side, wanted);
    if (scaled == nullptr) return images;
    SendMessageW(toolbar, TB_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(scaled));
    gScaled = scaled;
    return images;
}

void DestroyToolbarImages() {
    if (gScaled != nullptr) ImageList_Destroy(std::exchange(gScaled, nullptr));
}
