#include "ui/markup.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cinttypes>
#include <climits>
#include <cstdio>
#include <cstdlib>

#include "platform/waiting.h"
#include "ui/palette.h"
#include "ui/utf8.h"

namespace Tesk {

namespace {

constexpr char kLiteralBrace[] = "{";  // tag text of "{{}"
constexpr std::size_t kQuitCheckBytes = 4096;

bool IsSpace(unsigned char c) {
    return std::isspace(c) != 0;
}

// Splits a tag's text at its first colon.
struct Tag {
    std::string_view name;
    std::string_view value;
    bool hasValue = false;
};

Tag SplitTag(std::string_view text) {
    Tag tag;
    std::size_t colon = text.find(':');
    if (colon == std::string_view::npos) {
        tag.name = text;
    } else {
        tag.name = text.substr(0, colon);
        tag.value = text.substr(colon + 1);
        tag.hasValue = true;
    }
    return tag;
}

int ParsePadding(std::string_view digits) {
    std::string text(digits);
    errno = 0;
    char* end = nullptr;
    long long n = std::strtoll(text.c_str(), &end, 10);
    if (end == text.c_str()) return 0;
    return static_cast<int>(std::clamp<long long>(n, INT_MIN / 2, INT_MAX / 2));
}

enum class Align { Left, Right, Center, Padding };

// One run of the layout pass. R (remaining) is always width - column; both are
// kept because the rules are stated in terms of the remaining columns.
class Layout {
public:
    Layout(int width, const VariableMap& variables)
        : width_(std::max(width, 0)), remaining_(width_), variables_(variables) {}

    std::string run(std::string_view text) {
        out_.reserve(text.size() + 16);
        std::size_t nextQuitCheck = kQuitCheckBytes;
        for (std::size_t i = 0; i < text.size(); ++i) {
            // A host's text can be megabytes long: once the console is to
            // end, the rest is not laid out (nobody will see it).
            if (i >= nextQuitCheck) {
                nextQuitCheck = i + kQuitCheckBytes;
                if (Platform::QuitRequested()) break;
            }
            char c = text[i];
            if (static_cast<unsigned char>(c) >= 0x80) {
                i += character(text, i) - 1;
                continue;
            }
            if (c != '{') {
                byte(c);
                continue;
            }
            std::size_t close = text.find('}', i + 1);
            if (close == std::string_view::npos) {
                // Unclosed: the rest is tag text and shows nothing.
                out_.append(text.substr(i));
                break;
            }
            tag(text.substr(i + 1, close - i - 1));
            i = close;
        }
        return std::move(out_);
    }

private:
    void tag(std::string_view text) {
        if (text.empty()) return;
        if (text == kLiteralBrace) {
            countingIndent_ = false;
            wrapIfFull();
            out_.append("{{}");
            advance();
            return;
        }
        Tag tag = SplitTag(text);
        if (tag.name == "align") {
            segmentStart_ = out_.size();
            if (tag.value == "right") {
                mode_ = Align::Right;
            } else if (tag.value == "center") {
                mode_ = Align::Center;
            } else if (tag.value.substr(0, 8) == "padding:") {
                mode_ = Align::Padding;
                padding_ = ParsePadding(tag.value.substr(8));
            }
            return;
        }
        if (tag.name == "/align") {
            endSegment();
            return;
        }
        if (!tag.hasValue) {
            auto it = variables_.find(tag.name);
            if (it != variables_.end()) {
                std::string value = it->second ? it->second() : std::string();
                for (std::size_t i = 0; i < value.size(); ++i) {
                    if (mode_ == Align::Padding && padding_ <= 0) break;
                    if (static_cast<unsigned char>(value[i]) >= 0x80)
                        i += character(value, i) - 1;
                    else
                        byte(value[i]);
                }
                return;
            }
        }
        out_.push_back('{');
        out_.append(text);
        out_.push_back('}');
    }

    void endSegment() {
        switch (mode_) {
            case Align::Right:
                insertAtSegmentStart(std::max(remaining_, 0));
                break;
            case Align::Center:
                insertAtSegmentStart(std::max(remaining_, 0) / 2);
                break;
            case Align::Padding: {
                int n = std::min(padding_, remaining_);
                if (n > 0) {
                    out_.append(static_cast<std::size_t>(n), ' ');
                    remaining_ -= n;
                    column_ += n;
                }
                break;
            }
            case Align::Left:
                break;
        }
        mode_ = Align::Left;
        padding_ = 0;
    }

    void insertAtSegmentStart(int n) {
        if (n <= 0) return;
        out_.insert(segmentStart_, static_cast<std::size_t>(n), ' ');
        if (lastSpace_ != std::string::npos && lastSpace_ >= segmentStart_) {
            lastSpace_ += n;
            spaceColumn_ += n;
        }
        remaining_ -= n;
        column_ += n;
    }

    void byte(char c) {
        if (c == '\n') {
            out_.push_back('\n');
            newLine();
            indent_ = 0;
            countingIndent_ = true;
            return;
        }
        if (IsSpace(static_cast<unsigned char>(c))) {
            out_.push_back(c);
            advance();
            // A line's leading spaces are its indent, no place to wrap.
            if (countingIndent_ && c == ' ') {
                ++indent_;
                return;
            }
            lastSpace_ = out_.size() - 1;
            spaceColumn_ = column_;
            return;
        }
        countingIndent_ = false;
        wrapIfFull();
        out_.push_back(c);
        advance();
    }

    // A character beyond ASCII at text[at]: copied whole, taking its columns
    // (invalid bytes one each, as they are drawn). Returns its length.
    std::size_t character(std::string_view text, std::size_t at) {
        const Utf8::Char c = Utf8::Decode(text, at);
        int columns = c.valid ? Utf8::Columns(c.codePoint) : 1;
        if (columns < 0) columns = 1;
        if (columns > 0) {
            countingIndent_ = false;
            wrapIfFull(columns);
        }
        out_.append(text.substr(at, c.length));
        advance(columns);
        return c.length;
    }

    // A visible character of `columns` that does not fit: the word so far
    // moves to the next line at the line's last space, or the line is cut
    // hard. The new line keeps the indent of the line it continues.
    void wrapIfFull(int columns = 1) {
        if (remaining_ >= columns) return;
        if (lastSpace_ != std::string::npos) {
            out_[lastSpace_] = '\n';
            int carried = column_ - spaceColumn_;
            std::size_t lineStart = lastSpace_ + 1;
            lastSpace_ = std::string::npos;
            const int indent = hangingIndent(carried);
            out_.insert(lineStart, static_cast<std::size_t>(indent), ' ');
            column_ = carried + indent;
            remaining_ = width_ - column_;
            if ((mode_ == Align::Right || mode_ == Align::Center) && segmentStart_ < lineStart)
                segmentStart_ = lineStart;
            // A wide character may still not fit after the word it ends.
            if (remaining_ >= columns || column_ == indent) return;
        }
        out_.push_back('\n');
        newLine();
        const int indent = hangingIndent(0);
        out_.append(static_cast<std::size_t>(indent), ' ');
        column_ = indent;
        remaining_ = width_ - indent;
    }

    // The indent a wrapped line continues with: the leading spaces of the
    // line it comes from, in plain left-aligned text, when they leave at least
    // half of the width (and the carried word still fits after them).
    int hangingIndent(int carried) const {
        if (mode_ != Align::Left || indent_ <= 0) return 0;
        if (indent_ * 2 >= width_ || indent_ + carried > width_) return 0;
        return indent_;
    }

    void newLine() {
        remaining_ = width_;
        column_ = 0;
        lastSpace_ = std::string::npos;
        // An aligned segment continues on the new line and aligns there.
        if (mode_ == Align::Right || mode_ == Align::Center) segmentStart_ = out_.size();
    }

    void advance(int columns = 1) {
        remaining_ -= columns;
        column_ += columns;
        padding_ -= columns;
    }

    const int width_;
    int remaining_;
    int column_ = 0;
    std::size_t lastSpace_ = std::string::npos;
    int spaceColumn_ = 0;  // the column just after the last space
    Align mode_ = Align::Left;
    int padding_ = 0;
    std::size_t segmentStart_ = 0;
    int indent_ = 0;              // leading spaces of the current source line
    bool countingIndent_ = true;  // nothing visible on that line yet
    const VariableMap& variables_;
    std::string out_;
};

// One run of the drawing pass.
class Painter {
public:
    explicit Painter(const DrawTarget& t)
        : t_(t), colours_(t.colours ? *t.colours : StandardColours()) {
        background_ = t.background;
        foreground_ = t.foreground;
    }

    void run(std::string_view text) {
        if (!t_.window || t_.width <= 0 || t_.height <= 0) return;
        wattrset(t_.window, t_.active ? TextAttr(t_.background, t_.foreground) : A_NORMAL);
        for (std::size_t i = 0; i < text.size(); ++i) {
            char c = text[i];
            if (c == '\n') {
                flush();
                column_ = 0;
                ++line_;
                if (line_ - t_.firstLine >= t_.height) return;
                continue;
            }
            const unsigned char u = static_cast<unsigned char>(c);
            if (u >= 0x80) {
                // Whole characters only: an invalid byte shows as "?", a C1
                // control as a space, so each takes the one column the
                // layout gave it.
                const Utf8::Char ch = Utf8::Decode(text, i);
                if (!ch.valid)
                    run_.push_back('?');
                else if (Utf8::Columns(ch.codePoint) < 0)
                    run_.push_back(' ');
                else
                    run_.append(text.substr(i, ch.length));
                runAscii_ = runAscii_ && !ch.valid;
                i += ch.length - 1;
                continue;
            }
            if (c != '{') {
                run_.push_back(u < 0x20 || u == 0x7f ? ' ' : c);
                continue;
            }
            std::size_t close = text.find('}', i + 1);
            if (close == std::string_view::npos) break;
            flush();
            tag(text.substr(i + 1, close - i - 1));
            i = close;
        }
        flush();
    }

private:
    void tag(std::string_view text) {
        if (text == kLiteralBrace) {
            run_.push_back('{');
            flush();
            return;
        }
        Tag tag = SplitTag(text);
        if (tag.name == "color" && tag.hasValue) {
            foreground_ = ColourByName(colours_, tag.value);
            colourOpen_ = true;
            apply();
        } else if (tag.name == "/color" && colourOpen_) {
            resetColours();
            colourOpen_ = false;
        } else if (tag.name == "bgcolor" && tag.hasValue) {
            background_ = ColourByName(colours_, tag.value);
            backgroundOpen_ = true;
            apply();
        } else if (tag.name == "/bgcolor" && backgroundOpen_) {
            resetColours();
            backgroundOpen_ = false;
        }
    }

    void resetColours() {
        background_ = t_.background;
        foreground_ = t_.foreground;
        apply();
    }

    void apply() {
        if (t_.active) wattrset(t_.window, TextAttr(background_, foreground_));
    }

    // Prints the pending run where the column says, clipped to the width
    // (never splitting a character, never a wide one half outside).
    void flush() {
        if (run_.empty()) return;
        const int columns = runAscii_
                                ? static_cast<int>(std::min<std::size_t>(run_.size(), INT_MAX / 2))
                                : Utf8::TextColumns(run_);
        int row = line_ - t_.firstLine;
        if (row >= 0 && row < t_.height && column_ < t_.width) {
            const int room = t_.width - column_;
            std::size_t n = 0;
            if (runAscii_) {
                n = std::min(static_cast<std::size_t>(room), run_.size());
            } else {
                for (int used = 0; n < run_.size();) {
                    const Utf8::Char ch = Utf8::Decode(run_, n);
                    const int width = std::max(Utf8::Columns(ch.codePoint), 0);
                    if (used + width > room) break;
                    used += width;
                    n += ch.length;
                }
            }
            if (n > 0) mvwaddnstr(t_.window, row, column_, run_.data(), static_cast<int>(n));
        }
        column_ = static_cast<int>(std::min<long>(long{column_} + columns, INT_MAX / 2));
        run_.clear();
        runAscii_ = true;
    }

    const DrawTarget& t_;
    const ColourMap& colours_;
    int background_;
    int foreground_;
    bool colourOpen_ = false;
    bool backgroundOpen_ = false;
    int line_ = 0;
    int column_ = 0;
    std::string run_;
    bool runAscii_ = true;  // the run has no character beyond ASCII
};

const char* const kHostVariableNames[] = {
    "ip",
    "ssl-thumbprint-sha-1",
    "ssl-thumbprint-sha-256",
    "ssl-thumbprint-sha-512",
    "ssh-dsa-fingerprint",
    "ssh-rsa-fingerprint",
    "kovaproduct",
    "kovaversion",
    "servicetag",
    "assettag",
    "BIOSversion",
    "BMCversion",
    "CPLDversion",
    "PLSAversion",
};

}  // namespace

const ColourMap& StandardColours() {
    static const ColourMap colours = {
        {"white", 7}, {"black", 0}, {"dark-grey", 6}, {"light-grey", 2}, {"yellow", 3}, {"red", 1},
    };
    return colours;
}

int ColourByName(const ColourMap& colours, std::string_view name) {
    auto it = colours.find(name);
    return it == colours.end() ? 0 : it->second;
}

VariableMap EmptyHostVariables() {
    VariableMap map;
    for (const char* name : kHostVariableNames) map[name] = [] { return std::string(); };
    return map;
}

std::string FormatByteSize(std::uint64_t bytes) {
    static const char kUnits[] = "MGTP";
    std::uint64_t unit = 1024 * 1024;
    int index = 0;
    while (index < 3 && bytes >= unit * 1024) {
        unit *= 1024;
        ++index;
    }
    unsigned long whole = static_cast<unsigned long>(bytes / unit);
    unsigned long tenths = static_cast<unsigned long>((bytes % unit) * 10 / unit);
    char buffer[48];
    std::snprintf(buffer, sizeof buffer, "%lu.%lu %cB", whole, tenths, kUnits[index]);
    return buffer;
}

std::string EscapeMarkup(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (char c : text) {
        if (c == '{')
            out.append("{{}");
        else
            out.push_back(c);
    }
    return out;
}

std::string LayoutMarkup(std::string_view text, int width, const VariableMap& variables) {
    return Layout(width, variables).run(text);
}

int CountLines(std::string_view laidOut) {
    // Newlines inside an unclosed trailing tag are not lines.
    int lines = 1;
    for (std::size_t i = 0; i < laidOut.size(); ++i) {
        if (laidOut[i] == '\n') {
            ++lines;
        } else if (laidOut[i] == '{') {
            std::size_t close = laidOut.find('}', i + 1);
            if (close == std::string_view::npos) break;
            i = close;
        }
    }
    return lines;
}

void DrawMarkup(const DrawTarget& target, std::string_view laidOut) {
    Painter(target).run(laidOut);
}

}  // namespace Tesk
