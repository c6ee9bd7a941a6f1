#pragma once

#include "objfile/loadfiles/TextLoadFile.h"

/// Motorola S-records, format "srec".
class SRecordLoadFile : public TextLoadFile {
public:
    explicit SRecordLoadFile(const char* path);

protected:
    bool readLine(const char* line) override;

private:
    std::uint16_t m_dataRecords = 0;
};
