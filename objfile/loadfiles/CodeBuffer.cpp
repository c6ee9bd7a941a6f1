#include "objfile/loadfiles/CodeBuffer.h"

#include "base/HException.h"

CodeBuffer::CodeBuffer(const std::string& fileName)
    : m_fileName(fileName),
      m_file(std::fopen(fileName.c_str(), "wb"), std::fclose)
{
    if (!m_file)
        throw HException("cannot open " + fileName);
}

void CodeBuffer::setAddress(unsigned int address)
{
    if (address == m_recordAddress + m_length)
        return;
    breakRecord();
    m_recordAddress = address;
}

void CodeBuffer::addByte(unsigned int byte)
{
    const auto address = static_cast<unsigned int>(m_recordAddress + m_length);
    if ((address & 0xFFFF) == 0)
        breakRecord();
    m_record[m_length++] = static_cast<unsigned char>(byte);
    if (m_length == RecordLength)
        breakRecord();
}

void CodeBuffer::endRecord(unsigned int entryPoint)
{
    breakRecord();
    writeEnd(entryPoint);
    const bool failed = std::ferror(m_file.get()) != 0;
    if (std::fclose(m_file.release()) != 0 || failed)
        throw HException("cannot write " + m_fileName);
}

void CodeBuffer::writeEnd(unsigned int) { }

void CodeBuffer::print(const char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    std::vfprintf(m_file.get(), format, arguments);
    va_end(arguments);
}

void CodeBuffer::printText(const std::string& text)
{
    std::fwrite(text.data(), 1, text.size(), m_file.get());
}

void CodeBuffer::breakRecord()
{
    if (m_length == 0)
        return;
    writeRecord(m_recordAddress, {m_record.data(), m_length});
    m_recordAddress += static_cast<unsigned int>(m_length);
    m_length = 0;
}

std::string hexText(std::span<const unsigned char> bytes, const char* separator)
{
    static constexpr char Digits[] = "0123456789ABCDEF";
    std::string text;
    for (const unsigned char byte : bytes) {
        if (!text.empty())
            text += separator;
        text += Digits[byte >> 4];
        text += Digits[byte & 15];
    }
    return text;
}
