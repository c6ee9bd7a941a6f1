#include "objfile/model/TOBFMarker.h"

std::int32_t TOBFMarker::m_markCount = 0;

std::string TOBFMarker::label()
{
    if (name() != nullptr)
        return name()->str();
    if (m_labelNumber == -1)
        m_labelNumber = m_markCount++;
    return "@" + std::to_string(m_labelNumber);
}

std::string TOBFFilename::printString()
{
    return "\t.FILE\t\"" + (m_file != nullptr ? m_file->str() : std::string()) + "\"";
}

std::string TOBFLocus::printString()
{
    const HString* file = m_filename != nullptr ? m_filename->file() : nullptr;
    return "\t.LINE\t" + std::to_string(m_line) + ", \"" + (file != nullptr ? file->str() : "")
        + "\"";
}
