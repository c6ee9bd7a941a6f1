#pragma once

#include "toolchain/kld/LinkImage.h"

#include <vector>

/// The checksums that -H asks for. Each stands behind the last item of its section under the label
/// `__checksum_NAME`: a word, or two for crc32, over the section's bytes from its first address up
/// to the checksum, gaps counted as 0xFF.
class Checksums {
public:
    explicit Checksums(LinkImage& image);

    /// Computes them, once everything has been encoded.
    void compute();

private:
    struct Checksum {
        TOBFSection* section;
        TOBFInsn* item;
        ChecksumAlgorithm algorithm;
    };
    void add(TOBFSection* section, ChecksumAlgorithm algorithm);

    LinkImage& m_image;
    std::vector<Checksum> m_checksums;
};

/// crc16: CRC-16/CCITT-FALSE (polynomial 0x1021, initial value 0xFFFF). crc32: CRC-32/BZIP2. sum:
/// of the bytes, to 16 bits. xor: of the bytes.
std::uint32_t computeChecksum(ChecksumAlgorithm algorithm, const std::vector<unsigned char>& bytes);
