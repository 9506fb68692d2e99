#include "tools/rightclick/picture_win32.h"

#include <algorithm>
#include <exception>
#include <string>

#include "foundation/text/number.h"
#include "platform/handle.h"
#include "platform/menu.h"
#include "tools/rightclick/failure.h"

namespace rightclick {
namespace {

constexpr const wchar_t* kWindowClass = L"rightclick";
constexpr const wchar_t* kPopupClass = L"#32768";
constexpr int kMargin = 40;  // from the corner of the work area, pixels
constexpr UINT kTickMilliseconds = 40;
constexpr int kCalmTicks = 15;    // how long the windows must stay as they are before the picture
constexpr int kIconOverhang = 1;  // how much wider than a check mark an icon may be, pixels
constexpr std::uint32_t kGround = 0xFFFFFFFF;
constexpr int kIconMargin = 2;  // around an icon in its column, pixels
constexpr int kFirstCalmTicks = 3;
constexpr int kTicksOfRest = 25;  // more than the time after which a submenu opens
constexpr int kLastTick = 300;

[[noreturn]] void fail(const char* what) {
    throw Failure(ExitCode::PlatformFailure,
                  std::string(what) + " (error " + owlkit::formatNumber<char>(GetLastError()) + ")");
}

struct WindowTraits {
    using Type = HWND;
    static constexpr Type none() { return nullptr; }
    static void close(Type window) noexcept { DestroyWindow(window); }
};
struct ScreenTraits {
    using Type = HDC;
    static constexpr Type none() { return nullptr; }
    static void close(Type screen) noexcept { ReleaseDC(nullptr, screen); }
};
struct MemoryDcTraits {
    using Type = HDC;
    static constexpr Type none() { return nullptr; }
    static void close(Type dc) noexcept { DeleteDC(dc); }
};
struct WindowClassTraits {
    using Type = ATOM;
    static constexpr Type none() { return 0; }
    static void close(Type) noexcept { UnregisterClassW(kWindowClass, GetModuleHandleW(nullptr)); }
};

// Puts the pointer where it selects no entry, and back.
class PointerAside {
  public:
    PointerAside() {
        known_ = GetCursorPos(&place_) != FALSE;
        SetCursorPos(GetSystemMetrics(SM_CXSCREEN) - 1, GetSystemMetrics(SM_CYSCREEN) - 1);
    }
    PointerAside(const PointerAside&) = delete;
    PointerAside& operator=(const PointerAside&) = delete;
    ~PointerAside() {
        if (known_)
            SetCursorPos(place_.x, place_.y);
    }

  private:
    POINT place_ = {};
    bool known_;
};

// The rectangles of the popup menus on the screen.
std::vector<RECT> popupRectangles() {
    std::vector<RECT> rectangles;
    const auto collect = [](HWND window, LPARAM list) -> BOOL {
        wchar_t name[16] = {};
        RECT rectangle;
        if (GetClassNameW(window, name, static_cast<int>(std::size(name))) != 0 &&
            std::wstring_view(name) == kPopupClass && IsWindowVisible(window) &&
            GetWindowRect(window, &rectangle))
            reinterpret_cast<std::vector<RECT>*>(list)->push_back(rectangle);
        return TRUE;
    };
    EnumThreadWindows(GetCurrentThreadId(), collect, reinterpret_cast<LPARAM>(&rectangles));
    return rectangles;
}

RECT unionOf(const std::vector<RECT>& rectangles) {
    RECT all = {};
    for (const RECT& rectangle : rectangles)
        UnionRect(&all, &all, &rectangle);
    return all;
}

// What the screen shows in `area`, white outside of `rectangles`.
Picture copyScreen(const RECT& area, const std::vector<RECT>& rectangles) {
    const int width = area.right - area.left;
    const int height = area.bottom - area.top;
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;  // rows from the top
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    const platform::UniqueHandle<ScreenTraits> screen(GetDC(nullptr));
    const platform::UniqueHandle<MemoryDcTraits> memory(CreateCompatibleDC(screen.get()));
    void* bits = nullptr;
    const platform::BitmapHandle bitmap(
        CreateDIBSection(screen.get(), &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    if (!memory || !bitmap)
        fail("there is no room for a picture");
    const HGDIOBJ before = SelectObject(memory.get(), static_cast<HBITMAP>(bitmap.get()));
    const bool copied = BitBlt(memory.get(), 0, 0, width, height, screen.get(), area.left, area.top, SRCCOPY);
    GdiFlush();
    SelectObject(memory.get(), before);
    if (!copied)
        fail("the screen cannot be copied");

    Picture picture{static_cast<UINT>(width), static_cast<UINT>(height), {}};
    picture.pixels.assign(std::size_t{picture.width} * picture.height, kGround);
    const std::uint32_t* pixels = static_cast<const std::uint32_t*>(bits);
    for (const RECT& rectangle : rectangles)
        for (LONG y = rectangle.top - area.top; y < rectangle.bottom - area.top; ++y)
            for (LONG x = rectangle.left - area.left; x < rectangle.right - area.left; ++x)
                picture.pixels[static_cast<std::size_t>(y * width + x)] = pixels[y * width + x] | 0xFF000000;
    return picture;
}

// The menu on the screen. A timer works it, since the call that shows it returns only when it is closed: key
// presses go to the submenu and open it; once nothing moves any more, the picture is taken and the menu
// closed.
class PopupSession {
  public:
    PopupSession(HMENU menu, int submenu, IContextMenu2* shell)
        : menu_(menu), submenu_(submenu), shell_(shell) {}
    PopupSession(const PopupSession&) = delete;
    PopupSession& operator=(const PopupSession&) = delete;

    Picture run() {
        createWindow();
        joinIconsAndChecks();
        const PointerAside aside;
        SetForegroundWindow(window_.get());
        RECT area = {};
        SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
        if (!SetTimer(window_.get(), 1, kTickMilliseconds, nullptr))
            fail("there is no timer");
        TrackPopupMenuEx(menu_, TPM_LEFTALIGN | TPM_TOPALIGN | TPM_NONOTIFY | TPM_RETURNCMD,
                         area.left + kMargin, area.top + kMargin, window_.get(), nullptr);
        if (error_)
            std::rethrow_exception(error_);
        if (picture_.pixels.empty())
            throw Failure(ExitCode::PlatformFailure, "the menu was closed before its picture was taken");
        return std::move(picture_);
    }

  private:
    // Icons stand where check marks would, as in the shell's own menus; not where texts would run into them.
    void joinIconsAndChecks() {
        if (GetSystemMetrics(SM_CXMENUCHECK) < GetSystemMetrics(SM_CYSMICON) - kIconOverhang)
            return;
        MENUINFO style = {};
        style.cbSize = sizeof style;
        style.fMask = MIM_STYLE | MIM_APPLYTOSUBMENUS;
        style.dwStyle = MNS_CHECKORBMP;
        SetMenuInfo(menu_, &style);
    }

    void createWindow() {
        WNDCLASSEXW description = {};
        description.cbSize = sizeof description;
        description.lpfnWndProc = procedure;
        description.hInstance = GetModuleHandleW(nullptr);
        description.lpszClassName = kWindowClass;
        class_.reset(RegisterClassExW(&description));
        window_.reset(CreateWindowExW(WS_EX_TOOLWINDOW | WS_EX_TOPMOST, kWindowClass, L"",
                                      WS_POPUP | WS_VISIBLE, kMargin, kMargin, 1, 1, nullptr, nullptr,
                                      description.hInstance, nullptr));
        if (!window_)
            fail("no window can be shown; is there a display?");
        SetWindowLongPtrW(window_.get(), GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    }

    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
        auto* session = reinterpret_cast<PopupSession*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        if (session && message == WM_TIMER) {
            session->guardedTick();
            return 0;
        }
        const bool isDrawing =
            message == WM_INITMENUPOPUP || message == WM_DRAWITEM || message == WM_MEASUREITEM;
        if (session && session->shell_ && isDrawing &&
            session->shell_->HandleMenuMsg(message, wParam, lParam) == S_OK)
            return message == WM_INITMENUPOPUP ? 0 : TRUE;
        return DefWindowProcW(window, message, wParam, lParam);
    }

    // An exception must not pass through the system's own loop.
    void guardedTick() noexcept {
        try {
            tick();
        } catch (...) {
            error_ = std::current_exception();
            EndMenu();
        }
    }

    void tick() {
        if (++ticks_ > kLastTick)
            throw Failure(ExitCode::PlatformFailure, "the menu does not come to rest");
        const std::vector<RECT> rectangles = popupRectangles();
        if (rectangles.empty())
            return;
        if (submenu_ >= 0 && !opened_ && !closed_.pixels.empty())
            return openSubmenu(rectangles.size() > 1);
        const bool same = std::equal(rectangles.begin(), rectangles.end(), last_.begin(), last_.end(),
                                     [](const RECT& a, const RECT& b) { return EqualRect(&a, &b); });
        calm_ = same ? calm_ + 1 : 0;
        last_ = rectangles;
        const bool isFirst = submenu_ >= 0 && !opened_;
        if (calm_ < (isFirst ? kFirstCalmTicks : kCalmTicks))
            return;
        if (isFirst) {
            closedArea_ = unionOf(rectangles);
            closed_ = copyScreen(closedArea_, rectangles);
            return;
        }
        const RECT area = unionOf(rectangles);
        picture_ = copyScreen(area, rectangles);
        if (opened_)
            restoreIcon(area);
        EndMenu();
    }

    RECT submenuRectangle() const {
        RECT item = {};
        if (!GetMenuItemRect(nullptr, menu_, static_cast<UINT>(submenu_), &item))
            fail("the submenu is not on the screen");
        return item;
    }

    void openSubmenu(bool isOpen) {
        const RECT item = submenuRectangle();
        // A small move now and then, in case the first one came too early.
        SetCursorPos((item.left + item.right) / 2 + ticks_ / kTicksOfRest % 2, (item.top + item.bottom) / 2);
        opened_ = isOpen;
    }

    // Wine shows the icon of a highlighted entry in inverted colours, which Windows does not: its pixels are
    // taken from the picture before, those of the ground become the highlight's.
    void restoreIcon(const RECT& area) {
        const RECT item = submenuRectangle();
        const LONG right = item.left + GetSystemMetrics(SM_CXSMICON) + 2 * kIconMargin;
        const auto before = [&](LONG x, LONG y) {
            return closed_.pixels[static_cast<std::size_t>(y - closedArea_.top) * closed_.width +
                                  static_cast<std::size_t>(x - closedArea_.left)];
        };
        const auto now = [&](LONG x, LONG y) -> std::uint32_t& {
            return picture_.pixels[static_cast<std::size_t>(y - area.top) * picture_.width +
                                   static_cast<std::size_t>(x - area.left)];
        };
        const std::uint32_t ground = before(item.left, item.top);
        const std::uint32_t highlight = now(item.left, item.top);
        for (LONG y = item.top; y < item.bottom; ++y)
            for (LONG x = item.left; x < right; ++x)
                now(x, y) = before(x, y) == ground ? highlight : before(x, y);
    }

    HMENU menu_;
    int submenu_;
    IContextMenu2* shell_;
    platform::UniqueHandle<WindowClassTraits> class_;
    platform::UniqueHandle<WindowTraits> window_;
    bool opened_ = false;
    int ticks_ = 0;
    int calm_ = 0;
    std::vector<RECT> last_;
    Picture closed_;  // before the submenu was opened
    RECT closedArea_ = {};
    Picture picture_;
    std::exception_ptr error_;
};

}  // namespace

Picture takePopupPicture(HMENU menu, int submenu, IContextMenu2* shell) {
    return PopupSession(menu, submenu, shell).run();
}

}  // namespace rightclick
