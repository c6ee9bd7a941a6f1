#pragma once

#include <QString>

class Path;
class ProjectElement;
class ProjectTemplates;

/// Asked when a solution file isn't there.
class ProjectFileNotFoundErrorHandler {
public:
    virtual ~ProjectFileNotFoundErrorHandler() = default;
    /// True to try again, with the path as the handler left it.
    virtual bool retry(QString& path) = 0;
};

/// Asked when a solution couldn't be written.
class ProjectFileSaveErrorHandler {
public:
    virtual ~ProjectFileSaveErrorHandler() = default;
    /// True to try once more.
    virtual bool retry(ProjectElement* solution) = 0;
};

/// Asked when a project is to be made from a template that isn't there.
class TemplateNotFoundErrorHandler {
public:
    virtual ~TemplateNotFoundErrorHandler() = default;
    /// True if templateName now names another template to try.
    virtual bool retry(const ProjectTemplates& templates, const QString& projectName,
                       QString& templateName) = 0;
};
