// Joins deflate streams that were compressed apart.
#include "SorvaneBase/bxzip/DeflateJoin.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

namespace bxzip {
namespace {

constexpr int maxCodeLength = 15;
constexpr std::size_t literalSymbols = 288;
constexpr std::size_t distanceSymbols = 32;
constexpr unsigned endOfBlock = 256;

/// The bits of a stream, least significant first. Reading past the end gives zeros and is noticed by isPastEnd.
class BitReader {
public:
    BitReader(const std::byte* bytes, std::size_t size) : bytes(bytes), size(size) {}

    /// Makes at least 56 bits available to peek.
    void fill() {
        if (next + 8 <= size) {
            std::uint64_t word;
            std::memcpy(&word, bytes + next, 8);
            bits |= word << count;
            next += (63 - count) >> 3;
            count |= 56;
            return;
        }
        for (; count <= 56; count += 8, ++next)
            bits |= (next < size ? std::to_integer<std::uint64_t>(bytes[next]) : 0) << count;
    }

    unsigned peek(unsigned width) const { return static_cast<unsigned>(bits & ((1ull << width) - 1)); }

    /// Only of what fill made available.
    void skip(unsigned width) {
        bits >>= width;
        count -= width;
    }

    unsigned take(unsigned width) {
        fill();
        const unsigned value = peek(width);
        skip(width);
        return value;
    }

    std::uint64_t position() const { return next * 8ull - count; }
    bool isPastEnd() const { return position() > size * 8ull; }

    void seek(std::uint64_t position) {
        next = static_cast<std::size_t>(position / 8);
        bits = 0;
        count = 0;
        fill();
        skip(static_cast<unsigned>(position % 8));
    }

private:
    const std::byte* bytes;
    std::size_t size;
    std::size_t next = 0;
    std::uint64_t bits = 0;
    unsigned count = 0;
};

unsigned reversed(unsigned code, unsigned length) {
    unsigned result = 0;
    for (unsigned i = 0; i < length; ++i, code >>= 1)
        result = result << 1 | (code & 1);
    return result;
}

/// A Huffman code whose symbols matter only by the number of bits that they take.
class PrefixCode {
public:
    struct Symbol {
        std::uint16_t value = 0;
        std::uint8_t length = 0; ///< 0: no symbol has these bits
    };

    bool assign(const std::uint8_t* lengths, std::size_t symbols) {
        std::array<unsigned, maxCodeLength + 1> perLength{};
        for (std::size_t i = 0; i < symbols; ++i)
            ++perLength[lengths[i]];
        perLength[0] = 0;
        std::array<unsigned, maxCodeLength + 2> nextCode{};
        for (unsigned length = 1; length <= maxCodeLength; ++length) {
            if (nextCode[length] + perLength[length] > 1u << length)
                return false;
            nextCode[length + 1] = (nextCode[length] + perLength[length]) << 1;
        }
        shortCodes.fill({});
        longCount = 0;
        for (std::size_t i = 0; i < symbols; ++i) {
            const unsigned length = lengths[i];
            if (!length)
                continue;
            const unsigned bits = reversed(nextCode[length]++, length);
            const Symbol symbol{static_cast<std::uint16_t>(i), static_cast<std::uint8_t>(length)};
            if (length > tableBits)
                longCodes[longCount++] = {bits, symbol};
            else
                for (std::size_t at = bits; at < shortCodes.size(); at += std::size_t{1} << length)
                    shortCodes[at] = symbol;
        }
        return true;
    }

    /// The next symbol, of at least 15 peekable bits.
    Symbol find(const BitReader& reader) const {
        const Symbol symbol = shortCodes[reader.peek(tableBits)];
        return symbol.length ? symbol : findLong(reader);
    }

private:
    static constexpr unsigned tableBits = 11;

    struct LongCode {
        unsigned bits;
        Symbol symbol;
    };

    Symbol findLong(const BitReader& reader) const {
        for (std::size_t i = 0; i < longCount; ++i)
            if (reader.peek(longCodes[i].symbol.length) == longCodes[i].bits)
                return longCodes[i].symbol;
        return {};
    }

    std::array<Symbol, 1 << tableBits> shortCodes;
    std::array<LongCode, literalSymbols> longCodes;
    std::size_t longCount = 0;
};

class BlockWalker {
public:
    BlockWalker(const std::byte* bytes, std::size_t size) : reader(bytes, size), size(size) {}

    /// Follows the blocks to the end of the last. False when that is not the end of the stream too.
    bool walk() {
        bool last = false;
        while (!last) {
            lastBlock = reader.position();
            last = reader.take(1);
            if (!walkBlock(reader.take(2)) || reader.isPastEnd())
                return false;
        }
        return (reader.position() + 7) / 8 == size;
    }

    std::uint64_t lastBlockPosition() const { return lastBlock; }
    std::uint64_t endPosition() const { return reader.position(); }

private:
    bool walkBlock(unsigned type) {
        switch (type) {
        case 0:
            return walkStored();
        case 1:
            return assignFixedCodes() && walkSymbols();
        case 2:
            return readCodes() && walkSymbols();
        default:
            return false;
        }
    }

    bool walkStored() {
        reader.seek((reader.position() + 7) / 8 * 8);
        const unsigned length = reader.take(16);
        if ((reader.take(16) ^ length) != 0xFFFF)
            return false;
        reader.seek(reader.position() + length * 8ull);
        return true;
    }

    bool assignFixedCodes() {
        std::array<std::uint8_t, literalSymbols> lengths;
        std::fill_n(lengths.begin(), 144, std::uint8_t{8});
        std::fill_n(lengths.begin() + 144, 112, std::uint8_t{9});
        std::fill_n(lengths.begin() + 256, 24, std::uint8_t{7});
        std::fill_n(lengths.begin() + 280, 8, std::uint8_t{8});
        std::array<std::uint8_t, distanceSymbols> distances;
        distances.fill(5);
        return literals.assign(lengths.data(), lengths.size()) &&
               this->distances.assign(distances.data(), distances.size());
    }

    bool readCodes() {
        constexpr std::uint8_t order[] = {16, 17, 18, 0, 8, 7, 9, 6, 10, 5, 11, 4, 12, 3, 13, 2, 14, 1, 15};
        const std::size_t literalCount = 257 + reader.take(5);
        const std::size_t distanceCount = 1 + reader.take(5);
        const std::size_t orderCount = 4 + reader.take(4);
        std::array<std::uint8_t, std::size(order)> orderLengths{};
        for (std::size_t i = 0; i < orderCount; ++i)
            orderLengths[order[i]] = static_cast<std::uint8_t>(reader.take(3));
        if (!literals.assign(orderLengths.data(), orderLengths.size()))
            return false;

        std::array<std::uint8_t, literalSymbols + distanceSymbols> lengths{};
        const std::size_t total = literalCount + distanceCount;
        for (std::size_t i = 0; i < total;) {
            reader.fill();
            const auto symbol = literals.find(reader);
            if (!symbol.length)
                return false;
            reader.skip(symbol.length);
            if (symbol.value < 16) {
                lengths[i++] = static_cast<std::uint8_t>(symbol.value);
                continue;
            }
            if (symbol.value == 16 && i == 0)
                return false;
            const std::uint8_t repeated = symbol.value == 16 ? lengths[i - 1] : std::uint8_t{0};
            const std::size_t times = symbol.value == 16   ? 3 + reader.take(2)
                                      : symbol.value == 17 ? 3 + reader.take(3)
                                                           : 11 + reader.take(7);
            if (i + times > total)
                return false;
            std::fill_n(lengths.begin() + static_cast<std::ptrdiff_t>(i), times, repeated);
            i += times;
        }
        return literals.assign(lengths.data(), literalCount) &&
               distances.assign(lengths.data() + literalCount, distanceCount);
    }

    bool walkSymbols() {
        // One symbol takes at most 15 + 5 + 15 + 13 bits, which one fill covers.
        while (!reader.isPastEnd()) {
            reader.fill();
            auto symbol = literals.find(reader);
            reader.skip(symbol.length);
            if (symbol.length && symbol.value < endOfBlock) {
                symbol = literals.find(reader);
                reader.skip(symbol.length);
                if (symbol.length && symbol.value < endOfBlock)
                    continue;
                reader.fill();
            }
            if (!symbol.length)
                return false;
            if (symbol.value == endOfBlock)
                return true;
            if (symbol.value > 285)
                return false;
            // Lengths up to 10 have no extra bits, then four symbols each have one more; the last has none.
            const unsigned code = symbol.value - 257u;
            reader.skip(code < 8 || code == 28 ? 0 : code / 4 - 1);
            const auto distance = distances.find(reader);
            if (!distance.length || distance.value > 29)
                return false;
            reader.skip(distance.length);
            reader.skip(distance.value < 4 ? 0 : distance.value / 2u - 1);
        }
        return false;
    }

    BitReader reader;
    std::size_t size;
    std::uint64_t lastBlock = 0;
    PrefixCode literals;
    PrefixCode distances;
};

} // namespace

bool openDeflateStream(std::byte* stream, std::size_t& size) {
    BlockWalker walker(stream, size);
    if (!walker.walk())
        return false;

    const std::uint64_t last = walker.lastBlockPosition();
    stream[last / 8] &= ~(std::byte{1} << (last % 8));

    // The empty block's three header bits are zeros; they begin in the unused bits of the last byte.
    const auto used = static_cast<unsigned>(walker.endPosition() % 8);
    if (used)
        stream[size - 1] &= std::byte{0xFF} >> (8 - used);
    if (used == 0 || used > 5)
        stream[size++] = std::byte{0};
    for (const std::byte value : {std::byte{0}, std::byte{0}, std::byte{0xFF}, std::byte{0xFF}})
        stream[size++] = value;
    return true;
}

} // namespace bxzip
