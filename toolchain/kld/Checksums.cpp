#include "toolchain/kld/Checksums.h"

#include "objfile/model/TOBFDirectives.h"
#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFMarker.h"
#include "packages/archive/Crc32.h"

#include <algorithm>

namespace {

constexpr unsigned char ErasedByte = 0xFF;

std::uint16_t crc16(const std::vector<unsigned char>& bytes)
{
    constexpr unsigned Polynomial = 0x1021;
    unsigned crc = 0xFFFF;
    for (const unsigned char byte : bytes) {
        crc ^= unsigned{byte} << 8;
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 0x8000) != 0 ? crc << 1 ^ Polynomial : crc << 1;
    }
    return static_cast<std::uint16_t>(crc);
}

} // namespace

std::uint32_t computeChecksum(ChecksumAlgorithm algorithm, const std::vector<unsigned char>& bytes)
{
    std::uint32_t result = 0;
    switch (algorithm) {
    case ChecksumAlgorithm::Crc16: return crc16(bytes);
    case ChecksumAlgorithm::Crc32: return calc_crc32(bytes.data(), static_cast<int>(bytes.size()));
    case ChecksumAlgorithm::Sum:
        for (const unsigned char byte : bytes)
            result = (result + byte) & 0xFFFF;
        return result;
    case ChecksumAlgorithm::Xor:
        for (const unsigned char byte : bytes)
            result ^= byte;
        return result;
    }
    return result;
}

Checksums::Checksums(LinkImage& image) : m_image(image)
{
    for (const ChecksumRequest& request : image.options().checksums) {
        for (const std::string& name : request.sections) {
            TOBFSection* section = image.module()->findSection(HString::intern(name));
            if (section != nullptr)
                add(section, request.algorithm);
            else
                image.diagnostics().warning("section " + name + ", to be checked, is empty");
        }
    }
}

void Checksums::add(TOBFSection* section, ChecksumAlgorithm algorithm)
{
    TOBFSymbol* symbol = m_image.provideSymbol("__checksum_" + section->name()->str());
    auto* marker = new TOBFMarker(symbol->name());
    symbol->setDefinition(new TOBFMarkerExpr(marker));
    auto* item =
        new TOBFDefBytesInsn(new TOBFConstExpr(0), algorithm == ChecksumAlgorithm::Crc32 ? 4 : 2);
    TOBFFragment* fragment = section->newFragment();
    fragment->addInsn(new TOBFBreakInsn);
    fragment->addInsn(new TOBFAlignInsn(2));
    fragment->addInsn(marker);
    fragment->addInsn(item);
    m_checksums.push_back({section, item, algorithm});
}

void Checksums::compute()
{
    for (const Checksum& checksum : m_checksums) {
        const unsigned lowest = checksum.section->lowestAddress();
        std::vector<unsigned char> bytes(checksum.section->getSize(), ErasedByte);
        checksum.section->dump(static_cast<unsigned>(bytes.size()), bytes.data());
        const auto end = static_cast<unsigned>(checksum.item->pc());
        bytes.resize(std::min<std::size_t>(bytes.size(), end - lowest));
        checksum.item->setOperand(0, new TOBFConstExpr(computeChecksum(checksum.algorithm, bytes)));
        checksum.item->encode();
    }
}
