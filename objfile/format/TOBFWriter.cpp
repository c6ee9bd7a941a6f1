#include "objfile/format/TOBFWriter.h"

#include <bit>
#include <cstring>

void TOBFWriter::externalizeLiteral(unsigned long long value)
{
    if (value < 8) {
        m_code.push_back(static_cast<unsigned char>(value));
        return;
    }
    const int size = (static_cast<int>(std::bit_width(value)) + 7) / 8;
    unsigned char record[10] = {TAG_LITX, static_cast<unsigned char>(size)};
    for (int i = 0; i < size; ++i)
        record[2 + i] = static_cast<unsigned char>(value >> (8 * (size - 1 - i)));
    m_code.insert(m_code.end(), record, record + 2 + size);
}

void TOBFWriter::externalizeString(const char* text, int length)
{
    externalizeLiteral(m_strings.size());
    externalizeLiteral(static_cast<unsigned long long>(length));
    m_code.push_back(TAG_MKSTRING);
    m_strings.insert(m_strings.end(), text, text + length);
}

void TOBFWriter::externalizeString(const char* text)
{
    if (text == nullptr)
        m_code.push_back(TAG_NULL);
    else
        externalizeString(text, static_cast<int>(std::strlen(text)));
}

void TOBFWriter::externalizeString(const HString* text)
{
    if (text == nullptr)
        m_code.push_back(TAG_NULL);
    else
        externalizeString(text->text(), static_cast<int>(text->length()));
}

void TOBFWriter::finish()
{
    std::vector<unsigned char> records;
    records.swap(m_code);
    m_code.reserve(records.size() + m_strings.size() + 256);
    externalizeLiteral(m_strings.size());
    externalizeTag(TAG_STRINGPOOL);
    m_code.insert(m_code.end(), m_strings.begin(), m_strings.end());
    m_code.insert(m_code.end(), records.begin(), records.end());
}
