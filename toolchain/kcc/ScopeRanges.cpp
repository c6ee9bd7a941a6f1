#include "toolchain/kcc/ScopeRanges.h"

#include "objfile/model/TOBFExpr.h"

#include <algorithm>
#include <map>
#include <set>

namespace {

/// More stretches than this aren't worth their space: the variables then show no value.
constexpr std::size_t MostStretches = 2000;

class Divider {
public:
    Divider(ObjectConverter& converter, const std::vector<FunctionScope>& scopes,
            const std::vector<MovingVariable>& variables)
        : m_converter(converter),
          m_scopes(scopes),
          m_variables(variables)
    {
    }

    void run()
    {
        std::set<std::int64_t> bounds;
        for (const FunctionScope& it : m_scopes)
            addBounds(bounds, it.range);
        for (const MovingVariable& variable : m_variables)
            for (const RangedLocation& location : variable.locations)
                addBounds(bounds, location.range);
        if (bounds.size() > MostStretches)
            return;
        for (auto start = bounds.begin(); start != bounds.end(); ++start) {
            const auto end = std::next(start);
            if (end != bounds.end())
                fill(*start, *end);
        }
    }

private:
    static void addBounds(std::set<std::int64_t>& bounds, const DwarfRange& range)
    {
        bounds.insert(range.start.offset);
        bounds.insert(range.end.offset);
    }

    static bool covers(const DwarfRange& range, std::int64_t offset)
    {
        return range.start.offset <= offset && offset < range.end.offset;
    }

    /// The last of the covering scopes: inner ones stand behind outer ones.
    const FunctionScope* innermost(std::int64_t offset) const
    {
        const FunctionScope* found = nullptr;
        for (const FunctionScope& it : m_scopes)
            if (covers(it.range, offset))
                found = &it;
        return found;
    }

    bool isVisible(const MovingVariable& variable, const FunctionScope* scope) const
    {
        while (scope->scope != variable.scope) {
            if (scope == &m_scopes.front())
                return false;
            scope = &m_scopes[scope->parent];
        }
        return true;
    }

    void fill(std::int64_t start, std::int64_t end)
    {
        const FunctionScope* inner = innermost(start);
        if (inner == nullptr)
            return;
        // Inner variables hide outer ones of the same name, and stand behind them.
        std::map<HString*, std::pair<TOBFSymbol*, TOBFExpr*>> present;
        for (const MovingVariable& variable : m_variables) {
            if (!isVisible(variable, inner))
                continue;
            present.erase(variable.symbol->name());
            for (const RangedLocation& location : variable.locations)
                if (covers(location.range, start))
                    present[variable.symbol->name()] = {variable.symbol, location.location};
        }
        if (!present.empty())
            addBlock(inner->scope, start, end, present);
    }

    void addBlock(TOBFScope* parent, std::int64_t start, std::int64_t end,
                  const std::map<HString*, std::pair<TOBFSymbol*, TOBFExpr*>>& present)
    {
        const unsigned section = m_scopes.front().range.start.section;
        auto* block = new TOBFScope(TAG_SCOPE_BLOCK);
        block->setScope(parent);
        block->setRange(m_converter.codeLabel({section, start}),
                        m_converter.codeLabel({section, end}));
        for (const auto& [name, place] : present) {
            auto* symbol = new TOBFSymbol(name);
            symbol->setType(place.first->type());
            symbol->setLocus(place.first->locus());
            symbol->setDefinition(place.second);
            m_converter.module()->addSymbol(symbol);
            symbol->setScope(block);
        }
    }

    ObjectConverter& m_converter;
    const std::vector<FunctionScope>& m_scopes;
    const std::vector<MovingVariable>& m_variables;
};

} // namespace

void divideScopes(ObjectConverter& converter, const std::vector<FunctionScope>& scopes,
                  const std::vector<MovingVariable>& variables)
{
    if (!variables.empty())
        Divider(converter, scopes, variables).run();
}
