// Mutation of texts that are made of lines and words. Changes of single bytes mostly make keys that
// nobody knows; those here leave the form of a file and put odd values into its places.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <random>
#include <string>

extern "C" size_t LLVMFuzzerMutate(uint8_t *data, size_t size, size_t maxSize);

namespace
{

constexpr char kSeparators[] = "=,;: {}[]\t\r\n\\";

// Values at the edges of what fields hold, and texts that mean something in C, HTML or SQL.
// clang-format off
constexpr const char *kOddWords[] = {
    "", "0", "1", "-1", "2", "7", "8", "9", "10", "15", "27", "100", "121", "124", "127", "128",
    "254", "255", "256", "32767", "32768", "65535", "65536", "70000", "2147483647", "2147483648",
    "-2147483648", "4294967295", "4294967296", "9223372036854775807", "-9223372036854775808",
    "18446744073709551615", "99999999999999999999", "0x0", "0x80", "0xff", "0x1000", "0x13ff",
    "0x1600", "0x1a00", "0x1f80", "0xffff", "0x10000", "0x20000108", "0x80000000", "0xffffffff",
    "0xffffffffffffffff", "1e39", "nan", "-0.5", "$NODEID", "$NODEID+0x180", "$NODEID+",
    "${index}", "${sub}", "%1", "%2", "%s", "*/", "//", "\"", "'", "?\?/", "<b>", "|x00ff", "|x0",
    "\xC3\xA4", "\xC3", "\xEF\xBF\xBF", "\xF0\x9F\x98\x80", "a,b", "a;b", "a[3]", "@ByteArray(",
    "const", "ro", "rww", "V4", "true", "#9223372036854775807", "#-1", "#256", "#121", "~", "|%00",
    "&a", "*a", "&a 1", "<<: *a", "null", "[]", "{}", "|", "- 1", "none",
};
// clang-format on

class LineMutator
{
public:
    LineMutator(const uint8_t *data, size_t size, unsigned seed)
        : text(reinterpret_cast<const char *>(data), size), random(seed)
    {
    }

    const std::string &mutated()
    {
        for (int i = below(4); i >= 0; --i) {
            switch (below(8)) {
            case 0:
                return moveLine(true);
            case 1:
                return moveLine(false);
            case 2:
                replaceWord(anyWord());
                break;
            default:
                replaceWord(kOddWords[size_t(below(int(std::size(kOddWords))))]);
            }
        }
        return text;
    }

private:
    struct Span {
        size_t begin;
        size_t size;
    };

    int below(int limit) { return int(random() % unsigned(limit)); }

    /// What stands around any place, up to the next of these characters.
    Span spanAt(const char *ends)
    {
        const size_t place = text.empty() ? 0 : random() % text.size();
        const size_t before = place > 0 ? text.find_last_of(ends, place - 1) : std::string::npos;
        const size_t begin = before == std::string::npos ? 0 : before + 1;
        return {begin, std::min(text.find_first_of(ends, begin), text.size()) - begin};
    }

    std::string anyWord()
    {
        const Span span = spanAt(kSeparators);
        return text.substr(span.begin, span.size);
    }

    void replaceWord(const std::string &word)
    {
        const Span span = spanAt(kSeparators);
        text.replace(span.begin, span.size, word);
    }

    const std::string &moveLine(bool keep)
    {
        const Span line = spanAt("\n");
        const std::string copy = text.substr(line.begin, line.size) + '\n';
        if (!keep)
            text.erase(line.begin, line.size + 1);
        if (keep || below(2) == 0)
            text.insert(spanAt("\n").begin, copy);
        return text;
    }

    std::string text;
    std::minstd_rand random;
};

} // namespace

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t maxSize, unsigned seed)
{
    if (seed % 4 == 0)
        return LLVMFuzzerMutate(data, size, maxSize);
    LineMutator mutator(data, size, seed);
    const std::string &text = mutator.mutated();
    const size_t length = std::min(text.size(), maxSize);
    std::memcpy(data, text.data(), length);
    return length;
}
