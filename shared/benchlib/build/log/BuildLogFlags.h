#pragma once

/// The flag word that goes with each addition to the build log. Its low byte is the level
/// (DiagnosticData::Level); bits without a name here are display options of the view.
namespace BuildLogFlags {

enum : unsigned {
    LevelMask = 0xFF,
    /// The item doesn't count in the groups that it stands in.
    NotCounted = 1u << 11,
    /// A group of the builder, which shows how many of its steps are done.
    ShowsProgress = 1u << 12,
    /// The item shows the time since its beginning.
    RecordsStartTime = 1u << 14,
    /// The item is shown with its children.
    Opened = 1u << 19,
};

} // namespace BuildLogFlags
