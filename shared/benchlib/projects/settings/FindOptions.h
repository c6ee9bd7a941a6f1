#pragma once

#include <QFlags>

/// How a text is searched for.
enum class FindOption {
    RegularExpression = 0x01,
    WholeWord = 0x02,
    MatchCase = 0x04,
    SearchUp = 0x08,
    ShowStatus = 0x10, ///< tell the user in the status bar
    Wrap = 0x20,       ///< go on at the other end of the file
};
Q_DECLARE_FLAGS(FindOptions, FindOption)
Q_DECLARE_OPERATORS_FOR_FLAGS(FindOptions)
