#include "toolchain/kld/InitTable.h"

#include "objfile/model/TOBFDirectives.h"
#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFMarker.h"
#include "toolchain/kld/LinkerSymbols.h"

#include <vector>

namespace {

constexpr const char* ConstantSection = "CONST";
constexpr unsigned ConstantFlags =
    static_cast<unsigned>(SectionKind::Const) | TOBFSection::LoadFlag;
constexpr int WordSize = 2;

bool needsImage(const TOBFSection* section)
{
    return section->sectionKind() == SectionKind::Data && !section->isLoaded();
}

bool needsClearing(const TOBFSection* section)
{
    return section->sectionKind() == SectionKind::Zeroed && !section->isLoaded();
}

class TableBuilder {
public:
    explicit TableBuilder(LinkImage& image) : m_image(image) { }

    void run()
    {
        TOBFSymbol* start = m_image.linkerSymbol(LinkerSymbols::InitTableStart);
        TOBFSymbol* end = m_image.linkerSymbol(LinkerSymbols::InitTableEnd);
        if (start == nullptr && end == nullptr)
            return;
        const std::vector<TOBFSection*> sections(m_image.module()->sections().begin(),
                                                 m_image.module()->sections().end());
        m_table = startFragment();
        label(m_table, start);
        for (TOBFSection* section : sections) {
            if (needsImage(section))
                addEntry(section, new TOBFMarkerExpr(addImage(section)));
            else if (needsClearing(section))
                addEntry(section, new TOBFConstExpr(0));
        }
        label(m_table, end);
    }

private:
    TOBFFragment* startFragment()
    {
        TOBFFragment* fragment = m_image.addFragment(ConstantSection, ConstantFlags);
        fragment->addInsn(new TOBFBreakInsn);
        fragment->addInsn(new TOBFAlignInsn(WordSize));
        return fragment;
    }

    static TOBFMarker* label(TOBFFragment* fragment, TOBFSymbol* symbol)
    {
        auto* marker = new TOBFMarker(symbol != nullptr ? symbol->name() : nullptr);
        fragment->addInsn(marker);
        if (symbol != nullptr)
            symbol->setDefinition(new TOBFMarkerExpr(marker));
        return marker;
    }

    TOBFMarker* addImage(TOBFSection* section)
    {
        TOBFFragment* fragment = startFragment();
        TOBFMarker* marker = label(fragment, nullptr);
        fragment->addInsn(new TOBFInitInsn(section->name(), m_image.module()));
        return marker;
    }

    void addEntry(TOBFSection* section, TOBFExpr* source)
    {
        m_table->addInsn(new TOBFDefAddrInsn(sectionSymbol(section, "_start")));
        m_table->addInsn(new TOBFDefAddrInsn(source));
        m_table->addInsn(new TOBFDefAddrInsn(sectionSymbol(section, "_size")));
    }

    TOBFExpr* sectionSymbol(TOBFSection* section, const char* suffix)
    {
        return new TOBFSymbolExpr(m_image.provideSymbol("__" + section->name()->str() + suffix));
    }

    LinkImage& m_image;
    TOBFFragment* m_table = nullptr;
};

} // namespace

void addInitTable(LinkImage& image) { TableBuilder(image).run(); }
