#pragma once

#include <memory>
#include <string>

/// `#pragma vector=V`, which the compiler doesn't know, becomes `__gantry_vector(V)` on the same
/// line; <intrinsics.h> makes an attribute of that. The compiler reads the changed text in place of
/// the file, under the file's own name.
class VectorPragma {
public:
    /// Reads the source. Throws HException if it can't be read.
    explicit VectorPragma(const std::string& source);
    ~VectorPragma();

    /// The option that puts the changed text in the file's place; empty if nothing had to change.
    std::string compilerOption() const;

    /// The changed text, or the same text if there is nothing to change.
    static std::string rewrite(const std::string& text);

private:
    struct Overlay;
    std::unique_ptr<Overlay> m_overlay;
};
