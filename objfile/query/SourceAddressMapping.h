#pragma once

#include <QString>
#include <QStringList>

#include <map>
#include <vector>

class HString;
class SymbolicDebug;

/// Which line is this address, and which addresses are this line. A statement is the run of items
/// that share one source position; its first address is that of the position.
class SourceAddressMapping {
public:
    /// In the order of the code; a line stands once for each of its positions.
    using Lines = std::vector<unsigned>;

    explicit SourceAddressMapping(const SymbolicDebug* debug) : m_debug(debug) { }

    /// False if no item holds the address, or it has no position. A position in a file without a
    /// name gives "???". Lines count from 1.
    bool AddressToSource(unsigned address, QString& file, unsigned& line) const;
    /// First address and bytes of the statement that holds the address.
    bool AddressToRange(unsigned address, unsigned& start, unsigned& length) const;
    /// The first address of exactly this line. The file is named as the compiler was given it.
    bool SourceToAddress(const QString& file, unsigned line, unsigned& address) const;
    /// The same with the bytes of the statement. False if it reaches the end of its fragment, so
    /// that it isn't known where it ends.
    bool SourceToAddress(const QString& file, unsigned line, unsigned& address,
                         unsigned& length) const;

    /// The lines with code, or an empty list.
    const Lines& getLineNumbers(const QString& file) const;
    /// The files with code.
    QStringList fileNames() const;

private:
    friend class SymbolicDebug;
    void addLine(HString* file, unsigned line) { m_lines[file].push_back(line); }

    std::map<HString*, Lines> m_lines;
    const SymbolicDebug* m_debug;
};
