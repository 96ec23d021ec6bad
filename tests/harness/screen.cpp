#include "tests/harness/screen.h"

#include <vterm.h>

#include <cstdio>
#include <stdexcept>
#include <vector>

namespace TeskTest {

namespace {

void AppendUtf8(std::string& out, uint32_t c) {
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

// How many bytes at the end of text begin a UTF-8 character that is not
// complete yet.
size_t IncompleteUtf8Tail(std::string_view text) {
    size_t n = text.size();
    for (size_t back = 1; back <= 3 && back <= n; ++back) {
        auto c = static_cast<unsigned char>(text[n - back]);
        if ((c & 0xC0) == 0x80) continue;  // a continuation byte: look further back
        size_t length = c >= 0xF0 ? 4 : c >= 0xE0 ? 3 : c >= 0xC0 ? 2 : 1;
        return length > back ? back : 0;
    }
    return 0;
}

// A cell's characters: "" for the right half of a wide character, " " for a
// blank cell.
std::string CellText(const VTermScreenCell& cell) {
    if (cell.chars[0] == static_cast<uint32_t>(-1)) return "";
    if (cell.chars[0] == 0) return " ";
    std::string text;
    for (int i = 0; i < VTERM_MAX_CHARS_PER_CELL && cell.chars[i]; ++i)
        AppendUtf8(text, cell.chars[i]);
    return text;
}

std::string TrimRight(std::string s) {
    while (!s.empty() && s.back() == ' ') s.pop_back();
    return s;
}

}  // namespace

Colour Colour::Indexed(int index) {
    Colour c;
    c.kind = Kind::Indexed;
    c.index = index;
    return c;
}

Colour Colour::Rgb(uint8_t red, uint8_t green, uint8_t blue) {
    Colour c;
    c.kind = Kind::Rgb;
    c.red = red;
    c.green = green;
    c.blue = blue;
    return c;
}

bool Colour::operator==(const Colour& other) const {
    return kind == other.kind &&
           (kind == Kind::Default ||
            (kind == Kind::Indexed
                 ? index == other.index
                 : red == other.red && green == other.green && blue == other.blue));
}

std::ostream& operator<<(std::ostream& out, const Colour& colour) {
    char rgb[16];
    std::snprintf(rgb, sizeof rgb, "#%02x%02x%02x", colour.red, colour.green, colour.blue);
    switch (colour.kind) {
        case Colour::Kind::Default:
            return out << "default(" << rgb << ")";
        case Colour::Kind::Indexed:
            return out << "index " << colour.index << "(" << rgb << ")";
        case Colour::Kind::Rgb:
            return out << "rgb " << rgb;
    }
    return out;
}

std::ostream& operator<<(std::ostream& out, const Position& position) {
    return out << "(col " << position.col << ", row " << position.row << ")";
}

struct Screen::Impl {
    VTerm* vt = nullptr;
    VTermScreen* screen = nullptr;
    bool cursorVisible = true;
    std::string pendingUtf8;

    static int OnSetTermProp(VTermProp prop, VTermValue* value, void* user) {
        auto* self = static_cast<Impl*>(user);
        if (prop == VTERM_PROP_CURSORVISIBLE) self->cursorVisible = value->boolean != 0;
        return 1;
    }

    Colour MakeColour(const VTermColor& raw, bool background) const {
        Colour c;
        if (background ? VTERM_COLOR_IS_DEFAULT_BG(&raw) : VTERM_COLOR_IS_DEFAULT_FG(&raw))
            c.kind = Colour::Kind::Default;
        else if (VTERM_COLOR_IS_INDEXED(&raw))
            c = Colour::Indexed(raw.indexed.idx);
        else
            c.kind = Colour::Kind::Rgb;
        VTermColor rgb = raw;
        vterm_screen_convert_color_to_rgb(screen, &rgb);
        c.red = rgb.rgb.red;
        c.green = rgb.rgb.green;
        c.blue = rgb.rgb.blue;
        return c;
    }

    // The cells of one row as text, with the column each byte belongs to.
    std::string RowText(int row, std::vector<int>* columns) const {
        int rows = 0, cols = 0;
        vterm_get_size(vt, &rows, &cols);
        std::string text;
        for (int col = 0; col < cols; ++col) {
            VTermScreenCell cell{};
            vterm_screen_get_cell(screen, VTermPos{row, col}, &cell);
            const std::string chars = CellText(cell);
            text += chars;
            if (columns) columns->insert(columns->end(), chars.size(), col);
        }
        return text;
    }
};

Screen::Screen(int cols, int rows) : impl_(std::make_unique<Impl>()) {
    impl_->vt = vterm_new(rows, cols);
    if (!impl_->vt) throw std::runtime_error("vterm_new failed");
    vterm_set_utf8(impl_->vt, 1);
    impl_->screen = vterm_obtain_screen(impl_->vt);
    static const VTermScreenCallbacks callbacks = [] {
        VTermScreenCallbacks c{};
        c.settermprop = &Impl::OnSetTermProp;
        return c;
    }();
    vterm_screen_set_callbacks(impl_->screen, &callbacks, impl_.get());
    // Programs that switch to the alternate screen get it, as on a real terminal.
    vterm_screen_enable_altscreen(impl_->screen, 1);
    vterm_screen_reset(impl_->screen, 1);
}

Screen::~Screen() {
    vterm_free(impl_->vt);
}

void Screen::feed(std::string_view bytes) {
    // A read from the terminal can end inside a UTF-8 character; the
    // emulator would take each half for a broken character, so the start of
    // an unfinished one waits for the next piece.
    std::string& pending = impl_->pendingUtf8;
    pending.append(bytes);
    size_t keep = IncompleteUtf8Tail(pending);
    size_t ready = pending.size() - keep;
    if (ready > 0) vterm_input_write(impl_->vt, pending.data(), ready);
    pending.erase(0, ready);
}

void Screen::resize(int cols, int rows) {
    vterm_set_size(impl_->vt, rows, cols);
}

int Screen::cols() const {
    int rows = 0, cols = 0;
    vterm_get_size(impl_->vt, &rows, &cols);
    return cols;
}

int Screen::rows() const {
    int rows = 0, cols = 0;
    vterm_get_size(impl_->vt, &rows, &cols);
    return rows;
}

std::string Screen::row(int row) const {
    if (row < 0 || row >= rows()) return {};
    return TrimRight(impl_->RowText(row, nullptr));
}

std::string Screen::text() const {
    std::string all;
    for (int r = 0; r < rows(); ++r) {
        if (r) all += '\n';
        all += row(r);
    }
    return all;
}

bool Screen::contains(std::string_view text) const {
    if (text.find('\n') != std::string_view::npos)
        return this->text().find(text) != std::string::npos;
    return find(text).has_value();
}

std::optional<Position> Screen::find(std::string_view text) const {
    if (text.empty()) return Position{};
    for (int r = 0; r < rows(); ++r) {
        std::vector<int> columns;
        std::string line = impl_->RowText(r, &columns);
        size_t at = line.find(text);
        if (at != std::string::npos) return Position{columns[at], r};
    }
    return std::nullopt;
}

Cell Screen::cell(int col, int row) const {
    Cell out;
    out.text = " ";
    if (col < 0 || row < 0 || col >= cols() || row >= rows()) return out;
    VTermScreenCell raw{};
    vterm_screen_get_cell(impl_->screen, VTermPos{row, col}, &raw);
    out.text = CellText(raw);
    out.width = raw.width;
    out.fg = impl_->MakeColour(raw.fg, false);
    out.bg = impl_->MakeColour(raw.bg, true);
    out.bold = raw.attrs.bold;
    out.underline = raw.attrs.underline != 0;
    out.blink = raw.attrs.blink;
    out.reverse = raw.attrs.reverse;
    return out;
}

Position Screen::cursor() const {
    VTermPos pos{};
    vterm_state_get_cursorpos(vterm_obtain_state(impl_->vt), &pos);
    return Position{pos.col, pos.row};
}

bool Screen::cursorVisible() const {
    return impl_->cursorVisible;
}

std::string Screen::dump() const {
    const int width = cols();
    std::string ruler = "    ";
    for (int c = 0; c < width; ++c) ruler += static_cast<char>('0' + c % 10);
    std::string out = "screen " + std::to_string(width) + "x" + std::to_string(rows()) +
                      ", cursor at col " + std::to_string(cursor().col) + " row " +
                      std::to_string(cursor().row) +
                      (cursorVisible() ? " (visible)" : " (hidden)") + "\n" + ruler + "\n";
    for (int r = 0; r < rows(); ++r) {
        char number[16];
        std::snprintf(number, sizeof number, "%2d |", r);
        out += number + impl_->RowText(r, nullptr) + "|\n";
    }
    return out;
}

}  // namespace TeskTest
