#pragma once

#include "script/es/ESNativeClass.h"

#include <QStringList>

#include <functional>

/// The script object "WScript": Echo writes a text for the user, Arguments are those of the run.
class BuiltinScript : public ESClass {
public:
    using Echo = std::function<void(const QString& text)>;

    explicit BuiltinScript(Echo echo);
    /// The object must live as long as the context.
    void install(ESContext* context, const QStringList& arguments = {});
    void call(ESContext* context, ESObject* function, ESObject* thisObject, int argc,
              ESValue* argv) override;

private:
    Echo m_echo;
};
