#pragma once

class ProjectElement;

/// Is told which elements are being built. The element is null for a group that belongs to none.
class BuildObserver {
public:
    virtual ~BuildObserver() = default;
    virtual void beginBuild(ProjectElement* element) = 0;
    virtual void endBuild(ProjectElement* element) = 0;
};
