// SPDX-License-Identifier: MIT
//
// PNG files of masks.
//
// A mask is little else than long runs of two values, and a general compressor still looks at each of its bytes. Here
// the runs are written as the deflate format's own "repeat the last byte", in a Huffman code made for them: the longest
// repetition (258 bytes) is one bit and its distance another. The checksum of a run is a formula. What is left is
// finding the ends of runs, eight bytes at a time.
#include "hostkit/mask_png.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

#include "hostkit/error.h"

namespace hostkit {
namespace {

constexpr int kSymbols = 286; ///< 256 bytes, the end, 29 lengths
constexpr int kEnd = 256;
constexpr int kLongest = 258;
constexpr int kLongestSymbol = 285;

/// Code lengths in bits; together they use up the code space exactly, as decoders demand: 1/2 for the longest run, 1/8
/// each for the two values of a hard mask, 29/128 for the end and the other lengths, the rest for the other values.
constexpr int bitsOf(int symbol) {
    if (symbol == kLongestSymbol)
        return 1;
    if (symbol == 0 || symbol == 255)
        return 3;
    if (symbol >= kEnd)
        return 7;
    return symbol <= 130 ? 13 : 14;
}

/// The canonical code, with the bits of each word in the order in which they are written.
std::array<std::uint32_t, kSymbols> makeCode() {
    std::array<std::uint32_t, kSymbols> words{};
    std::uint32_t next = 0;
    for (int bits = 1; bits <= 14; ++bits, next <<= 1)
        for (int symbol = 0; symbol < kSymbols; ++symbol)
            if (bitsOf(symbol) == bits) {
                for (int i = 0; i < bits; ++i)
                    words[static_cast<std::size_t>(symbol)] |= (next >> (bits - 1 - i) & 1U) << i;
                ++next;
            }
    return words;
}

class BitWriter {
  public:
    explicit BitWriter(std::string &bytes) : bytes_(bytes) {}

    void put(std::uint32_t value, int count) {
        pending_ |= static_cast<std::uint64_t>(value) << count_;
        for (count_ += count; count_ >= 8; count_ -= 8, pending_ >>= 8)
            bytes_.push_back(static_cast<char>(pending_));
    }
    void flush() { put(0, (8 - count_) % 8); }

  private:
    std::string &bytes_;
    std::uint64_t pending_ = 0;
    int count_ = 0;
};

/// A zlib stream of bytes that come as runs.
class RunCompressor {
  public:
    explicit RunCompressor(std::string &bytes) : bytes_(bytes), bits_(bytes) {
        bytes_ += "\x78\x01"; // deflate, quickly made
        writeTables();
    }

    void add(std::uint8_t value, std::size_t count) {
        if (value != value_) {
            writeRun();
            value_ = value;
        }
        count_ += count;
    }
    void finish() {
        writeRun();
        putSymbol(kEnd);
        bits_.flush();
        for (const std::uint64_t half : {high_, low_}) {
            bytes_.push_back(static_cast<char>(half >> 8));
            bytes_.push_back(static_cast<char>(half));
        }
    }

  private:
    static constexpr std::uint64_t kAdler = 65521;
    /// Keeps the sums of the checksum below 2^64.
    static constexpr std::size_t kSummed = 1U << 20;

    void putSymbol(int symbol) {
        static const std::array<std::uint32_t, kSymbols> code = makeCode();
        bits_.put(code[static_cast<std::size_t>(symbol)], bitsOf(symbol));
    }

    /// One last block with the code above, and one code word for the only distance, which is 1.
    void writeTables() {
        bits_.put(1, 1);
        bits_.put(2, 2);
        bits_.put(kSymbols - 257, 5);
        bits_.put(0, 5);
        // Lengths 13, 14 and 7 take two bits each, 3 and 1 three; the format lists them in this order.
        constexpr int kOrder[] = {16, 17, 18, 0, 8, 7, 9, 6, 10, 5, 11, 4, 12, 3, 13, 2, 14, 1};
        bits_.put(static_cast<std::uint32_t>(std::size(kOrder)) - 4, 4);
        for (const int length : kOrder) {
            const bool isCommon = length == 7 || length == 13 || length == 14;
            bits_.put(isCommon ? 2 : length == 3 || length == 1 ? 3 : 0, 3);
        }
        for (int symbol = 0; symbol < kSymbols; ++symbol)
            putLength(bitsOf(symbol));
        putLength(1);
    }
    void putLength(int length) {
        // Canonical words for 7, 13, 14 (00, 01, 10) and 1, 3 (110, 111), first bit lowest.
        switch (length) {
        case 7:
            return bits_.put(0, 2);
        case 13:
            return bits_.put(2, 2);
        case 14:
            return bits_.put(1, 2);
        case 1:
            return bits_.put(3, 3);
        default:
            return bits_.put(7, 3);
        }
    }

    void writeRun() {
        if (count_ == 0)
            return;
        for (std::size_t rest = count_; rest > 0; rest -= std::min(rest, kSummed))
            sum(std::min(rest, kSummed));
        putSymbol(value_);
        std::size_t rest = count_ - 1;
        for (; rest >= kLongest; rest -= kLongest) {
            putSymbol(kLongestSymbol);
            bits_.put(0, 1);
        }
        if (rest >= 3)
            putRepetition(static_cast<int>(rest));
        else
            for (; rest > 0; --rest)
                putSymbol(value_);
        count_ = 0;
    }
    /// 3 to 257 bytes: a symbol for the range of lengths, and the place in it.
    void putRepetition(int length) {
        int symbol = 257, first = 3, extra = 0;
        while (length >= first + (1 << extra)) {
            first += 1 << extra;
            ++symbol;
            // From the ninth symbol on, each four share a width.
            extra = symbol < 265 ? 0 : (symbol - 261) / 4;
        }
        putSymbol(symbol);
        bits_.put(static_cast<std::uint32_t>(length - first), extra);
        bits_.put(0, 1);
    }

    /// Adler-32 of `count` equal bytes.
    void sum(std::size_t count) {
        high_ = (high_ + count * low_ + std::uint64_t{value_} * (count * (count + 1) / 2)) % kAdler;
        low_ = (low_ + count * value_) % kAdler;
    }

    std::string &bytes_;
    BitWriter bits_;
    std::uint8_t value_ = 0;
    std::size_t count_ = 0;
    std::uint64_t low_ = 1;
    std::uint64_t high_ = 0;
};

/// Adds a row's runs. Most words are all of the run's value.
void addRow(RunCompressor &compressor, const std::uint8_t *row, std::size_t width) {
    for (std::size_t x = 0; x < width;) {
        const std::uint8_t value = row[x];
        const std::uint64_t wanted = 0x0101010101010101U * value;
        std::size_t end = x + 1;
        for (std::uint64_t word = wanted; end + sizeof word <= width; end += sizeof word) {
            std::memcpy(&word, row + end, sizeof word);
            if (word != wanted)
                break;
        }
        while (end < width && row[end] == value)
            ++end;
        compressor.add(value, end - x);
        x = end;
    }
}

std::uint32_t crc(const char *bytes, std::size_t count) {
    static const std::array<std::uint32_t, 256> table = [] {
        std::array<std::uint32_t, 256> made{};
        for (std::uint32_t i = 0; i < 256; ++i) {
            std::uint32_t value = i;
            for (int bit = 0; bit < 8; ++bit)
                value = value >> 1 ^ ((value & 1U) != 0 ? 0xEDB88320U : 0U);
            made[i] = value;
        }
        return made;
    }();
    std::uint32_t value = 0xFFFFFFFFU;
    for (std::size_t i = 0; i < count; ++i)
        value = table[(value ^ static_cast<std::uint8_t>(bytes[i])) & 0xFFU] ^ value >> 8;
    return ~value;
}

void addNumber(std::string &bytes, std::uint32_t value) {
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes.push_back(static_cast<char>(value >> shift));
}

void addChunk(std::string &bytes, const char *kind, const std::string &content) {
    addNumber(bytes, static_cast<std::uint32_t>(content.size()));
    const std::size_t start = bytes.size();
    bytes += kind;
    bytes += content;
    addNumber(bytes, crc(bytes.data() + start, bytes.size() - start));
}

struct CloseFile {
    void operator()(std::FILE *file) const { std::fclose(file); }
};

[[noreturn]] void failWriting(const std::string &path) {
    throw MediaError("cannot write " + inQuotes(path) + ": " + std::strerror(errno));
}

} // namespace

std::string encodePng(const Mask &mask, int width, int height) {
    std::string header;
    addNumber(header, static_cast<std::uint32_t>(width));
    addNumber(header, static_cast<std::uint32_t>(height));
    header += std::string("\x08\x00\x00\x00\x00", 5); // 8-bit grey, one pass

    std::string pixels;
    RunCompressor compressor(pixels);
    for (int y = 0; y < height; ++y) {
        const int source = std::min(y, mask.height() - 1);
        compressor.add(0, 1); // the row is not filtered
        if (mask.isUntouched(source)) {
            compressor.add(0, static_cast<std::size_t>(width));
            continue;
        }
        const std::uint8_t *const row = mask.row(source);
        addRow(compressor, row, static_cast<std::size_t>(std::min(width, mask.width())));
        if (width > mask.width())
            compressor.add(row[mask.width() - 1], static_cast<std::size_t>(width - mask.width()));
    }
    compressor.finish();

    std::string bytes = "\x89PNG\r\n\x1a\n";
    addChunk(bytes, "IHDR", header);
    addChunk(bytes, "IDAT", pixels);
    addChunk(bytes, "IEND", "");
    return bytes;
}

void writePng(const std::string &path, const Mask &mask, int width, int height) {
    const std::string bytes = encodePng(mask, width, height);
    std::unique_ptr<std::FILE, CloseFile> file(std::fopen(path.c_str(), "wb"));
    if (!file || std::fwrite(bytes.data(), 1, bytes.size(), file.get()) != bytes.size())
        failWriting(path);
    // The last bytes reach the disk when the file is closed: a full disk shows here.
    if (std::fclose(file.release()) != 0)
        failWriting(path);
}

void writePng(const std::string &path, const Mask &mask) {
    writePng(path, mask, mask.width(), mask.height());
}

} // namespace hostkit
