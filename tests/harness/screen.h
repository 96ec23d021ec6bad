// A terminal screen kept by a terminal emulator: bytes a program wrote go in,
// the characters and attributes of every cell come out.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>

namespace TeskTest {

// A cell's foreground or background colour.
struct Colour {
    enum class Kind { Default, Indexed, Rgb };
    Kind kind = Kind::Default;
    int index = -1;  // palette index 0..255 when Indexed
    // The colour as the terminal shows it (also filled for Default and Indexed).
    uint8_t red = 0, green = 0, blue = 0;

    static Colour Indexed(int index);
    static Colour Rgb(uint8_t red, uint8_t green, uint8_t blue);

    bool isDefault() const { return kind == Kind::Default; }
    // Equal when of the same kind with the same index, or the same RGB.
    bool operator==(const Colour& other) const;
};
std::ostream& operator<<(std::ostream& out, const Colour& colour);

struct Cell {
    std::string text;  // UTF-8; " " for a blank cell, "" for the right half of a wide character
    int width = 1;
    Colour fg, bg;
    bool bold = false;
    bool underline = false;
    bool blink = false;
    bool reverse = false;

    // The terminals the console runs on show standout as reverse video.
    bool standout() const { return reverse; }
};

struct Position {
    int col = 0;
    int row = 0;
    bool operator==(const Position&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Position& position);

class Screen {
public:
    Screen(int cols, int rows);
    ~Screen();
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

    // Bytes from the program. Complete and partial escape sequences alike.
    void feed(std::string_view bytes);
    void resize(int cols, int rows);

    int cols() const;
    int rows() const;

    std::string row(int row) const;
    // Every row, trailing blanks removed, joined with "\n".
    std::string text() const;
    // True when text appears within one row (text without "\n"), or within
    // text() (text with "\n").
    bool contains(std::string_view text) const;
    // Where text first appears within one row, scanning rows top to bottom.
    std::optional<Position> find(std::string_view text) const;

    // The cell at a column and row (both from 0). Out-of-range positions give
    // a blank default cell.
    Cell cell(int col, int row) const;
    Cell cell(Position at) const { return cell(at.col, at.row); }

    Position cursor() const;
    bool cursorVisible() const;

    // The screen framed with row and column numbers, for failure messages.
    std::string dump() const;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace TeskTest
