#pragma once

#include "base/HException.h"
#include "objfile/loadfiles/LoadFile.h"
#include "target/HMonitor.h"

#include <functional>
#include <string>
#include <vector>

/// 64 KB of flash that notes what is done with it, as "erase 1000 100".
class FakeMemory : public TargetMemoryInterface {
public:
    explicit FakeMemory(bool erase = true) : TargetMemoryInterface(Endian::Little, 2, erase)
    {
        bytes.assign(0x10000, 0xFF);
    }
    void note(const char* what, unsigned address, unsigned length)
    {
        char text[64];
        std::snprintf(text, sizeof text, "%s %x %x", what, address, length);
        done.emplace_back(text);
        if (fail && std::string(what) == failOn)
            throw HException("the wire broke");
    }
    void pokeBytes(unsigned address, unsigned length, const unsigned char* data) override
    {
        std::copy_n(data, length, bytes.begin() + address);
    }
    void peekBytes(unsigned address, unsigned length, unsigned char* data) override
    {
        std::copy_n(bytes.begin() + address, length, data);
    }
    void downloadBytes(unsigned address, unsigned length, const unsigned char* data,
                       bool last) override
    {
        note(last ? "last" : "write", address, length);
        pokeBytes(address, length, data);
    }
    void memsetBytes(unsigned address, unsigned length, unsigned char value) override
    {
        note("fill", address, length);
        std::fill_n(bytes.begin() + address, length, value);
    }
    bool verifyBytes(unsigned address, unsigned length, const unsigned char* data) override
    {
        note("verify", address, length);
        return TargetMemoryInterface::verifyBytes(address, length, data);
    }
    void eraseBytes(unsigned address, unsigned length, unsigned* start, unsigned* erased) override
    {
        note("erase", address, length);
        const unsigned first = address & ~(segment - 1);
        const unsigned last = (address + length - 1) | (segment - 1);
        std::fill(bytes.begin() + first, bytes.begin() + last + 1,
                  static_cast<unsigned char>(0xFF));
        *start = first;
        *erased = last - first + 1;
    }
    void eraseAll() override { note("erase all", 0, 0); }
    void lockBytes(unsigned address, unsigned length) override { note("lock", address, length); }
    void lockAll() override { note("lock all", 0, 0); }
    void unlockBytes(unsigned address, unsigned length) override
    {
        note("unlock", address, length);
    }
    void unlockAll() override { note("unlock all", 0, 0); }
    bool supportsDifferentialDownloading() const override { return true; }
    bool eraseRequiredForDownload() const override { return eraseRequired; }
    unsigned optimumEraseBytesFragment() const override { return 0x200; }
    unsigned optimumDownloadBytesFragment() const override { return 0x100; }
    unsigned optimumMemsetBytesFragment() const override { return 0x80; }
    unsigned optimumVerifyBytesFragment() const override { return 0x100; }
    unsigned optimumLockBytesFragment() const override { return 0x300; }

    static constexpr unsigned segment = 0x200;
    std::vector<unsigned char> bytes;
    std::vector<std::string> done;
    bool eraseRequired = true;
    bool fail = false;
    std::string failOn;
};

/// Notes what the host is told, each line behind the kind of its group or its own.
class FakeTargetHost : public TargetInterfaceHelperFunctions {
public:
    void progress(int current, int total, const char* what, const char*, bool) override
    {
        at = current;
        if (total >= 0)
            end = total;
        if (what != nullptr)
            lines.push_back(std::string("bar ") + what);
    }
    void message(const QString& text) override { lines.push_back(text.toStdString()); }
    void message(const QString& text, int kind) override
    {
        lines.push_back(text.toStdString() + QString::asprintf(" (%x)", kind).toStdString());
    }
    void error(const QString& text) override { lines.push_back("error " + text.toStdString()); }
    void beginGroup(const QString& title, int kind) override
    {
        lines.push_back(QString::asprintf("[%x] ", kind).toStdString() + title.toStdString());
    }
    void endGroup(const QString&) override { lines.emplace_back("[]"); }
    bool checkCancelled() override { return questionsUntilCancel-- == 0; }
    bool differentialDownloadEnabled() override { return differential; }

    std::vector<std::string> lines;
    int at = 0, end = 0;
    int questionsUntilCancel = -1;
    bool differential = true;
};

class FakeTarget : public HMonitor {
public:
    explicit FakeTarget(FakeTargetHost* host, unsigned capabilities = 0x57f)
        : HMonitor(QStringLiteral("Fake"), capabilities, host)
    {
    }
    void connect(bool) override
    {
        if (refuses)
            throw HException("no such pod");
        connected = true;
        setDeviceId(QStringLiteral("MSP430F149"));
    }
    void disconnect() override { connected = false; }
    bool isConnected() const override { return connected; }
    bool isStopped() override { return true; }
    TargetMemoryInterface* codeMemory() override { return &code; }
    TargetMemoryInterface* dataMemory() override { return &code; }
    TargetMemoryInterface* eeMemory() override { return hasEeprom ? &eeprom : nullptr; }
    void reset(bool, bool forDownload) override { executeResetScript(forDownload); }
    void go() override { ++goes; }
    void start(bool, unsigned) override { }
    void startDebugging(bool, unsigned, bool) override { }
    void step() override { }
    void stop() override { }
    void clear() override { }
    void loadBeginInitial() override { ++begins; }
    void loadEndFinal() override
    {
        ++ends;
        if (endFails)
            throw HException("cannot release");
    }
    bool canBeExternallyDisconnected() const override { return true; }
    bool hasBeenExternallyDisconnected() override
    {
        if (wireThrows)
            throw HException("gone");
        return lost;
    }
    bool isCompatibleWith(const QString& processor) const override
    {
        return processor == QLatin1String("MSP430F149");
    }

    FakeMemory code, eeprom;
    bool connected = false, refuses = false, hasEeprom = false, endFails = false;
    bool lost = false, wireThrows = false;
    int begins = 0, ends = 0, goes = 0;
};

/// A load file of given sections.
class FakeLoadFile : public StandardLoadFile {
public:
    bool hasLoadAddress() const override { return true; }
    void setLoadAddress(unsigned long) override { }
    bool createLoadFileSections() override { return true; }
    void add(unsigned address, std::vector<unsigned char> bytes, const char* name = "")
    {
        m_bytes.push_back(std::make_unique<std::vector<unsigned char>>(std::move(bytes)));
        m_sections.add(std::make_unique<StandardLoadFileSection>(
            name, address, static_cast<unsigned>(m_bytes.back()->size()), m_bytes.back()->data()));
    }
    void addZeros(unsigned address, unsigned length)
    {
        m_sections.add(std::make_unique<StandardLoadFileSection>("", address, length, nullptr));
    }
    void addEeprom(unsigned address, std::vector<unsigned char> bytes)
    {
        m_bytes.push_back(std::make_unique<std::vector<unsigned char>>(std::move(bytes)));
        m_sections.addee(std::make_unique<StandardLoadFileSection>(
            "EE", address, static_cast<unsigned>(m_bytes.back()->size()), m_bytes.back()->data()));
    }

private:
    std::vector<std::unique_ptr<std::vector<unsigned char>>> m_bytes;
};
