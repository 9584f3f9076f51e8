#pragma once

#include <QByteArray>

#include <algorithm>
#include <cstdint>
#include <vector>

/** Takes an input apart from its front. Behind its end there are zeros, so that every input means something. */
class FuzzInput
{
public:
    FuzzInput(const std::uint8_t *data, std::size_t size) : at(data), end(data + size) {}

    bool isEmpty() const { return at == end; }
    std::uint8_t byte() { return isEmpty() ? std::uint8_t{0} : *at++; }
    /** Two bytes, the high one first. */
    std::uint16_t word()
    {
        const int high = byte();
        return static_cast<std::uint16_t>(high << 8 | byte());
    }
    /** Any int, of four bytes. */
    int number()
    {
        const std::uint32_t high = word();
        return static_cast<int>(high << 16 | word());
    }
    /** As many bytes as the first one says and as there are. */
    std::vector<std::uint8_t> bytes()
    {
        const std::size_t length = byte();
        const auto *const from = at;
        at += std::min(length, static_cast<std::size_t>(end - at));
        return {from, at};
    }
    QByteArray text()
    {
        const auto content = bytes();
        return {reinterpret_cast<const char *>(content.data()), static_cast<int>(content.size())};
    }
    /** All that is left. */
    QByteArray rest()
    {
        QByteArray left(reinterpret_cast<const char *>(at), static_cast<int>(end - at));
        at = end;
        return left;
    }
    /** Writes stretches of bytes at addresses of a large block, for as many as the first byte says. */
    template<typename Block>
    void patch(Block &block)
    {
        const auto blockSize = static_cast<std::size_t>(block.size());
        for (int stretches = byte(); stretches > 0 && !isEmpty(); --stretches) {
            const std::size_t address = word() % blockSize;
            const auto content = bytes();
            const std::size_t count = std::min(content.size(), blockSize - address);
            std::copy_n(content.begin(), count, block.begin() + static_cast<std::ptrdiff_t>(address));
        }
    }

private:
    const std::uint8_t *at;
    const std::uint8_t *const end;
};
