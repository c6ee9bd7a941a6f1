#pragma once

#include "shell/actions/WidgetStrip.h"

class CodeEdit;

/// Buttons beside text that the mouse has selected. They go as soon as anything else happens.
class MiniToolbar : public WidgetStrip {
    Q_OBJECT
public:
    /// Belongs to the editor, which asks for it.
    explicit MiniToolbar(CodeEdit& edit);

    /// Near a place of the editor's viewport, without covering what is there.
    void showAt(QPoint point);

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    CodeEdit& m_edit;
};
