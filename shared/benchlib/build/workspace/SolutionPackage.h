#pragma once

#include <QString>
#include <QStringList>

class ProjectElement;
class ProjectSystem;

/// What packing a solution came to.
struct PackedSolution {
    QStringList members; ///< names in the package, the solution's own file first
    /// Files of the solution that aren't in the package: they don't exist, or lie elsewhere than in
    /// or below the solution's directory. As the solution names them.
    QStringList leftOut;
};

/// Asked while a packaged solution is opened.
class PackagedSolutionHandler {
public:
    virtual ~PackagedSolutionHandler() = default;
    /// True to replace a file that is dated later than the one in the package; false to keep it.
    virtual bool overwrite(const QString& path) = 0;
    /// One of several solution files; an empty string to open none.
    virtual QString chooseSolution(const QStringList& paths) = 0;
};

/// Writes the solution's file and those of its files that lie in or below its directory into one
/// compressed archive, those of dynamic folders and imported solutions included. `element` is any
/// element of the solution. The files are taken as they are on disk. An archive has no place for
/// the comment. Throws HException, with an earlier file of that path left as it was.
PackedSolution packageSolution(const ProjectSystem& projects, ProjectElement* element,
                               const QString& path, const QString& comment);

/// Unpacks a packaged solution into the directory, which is made if it doesn't exist, and returns
/// the absolute path of the solution file to open; empty if the handler chose none. Files keep
/// their times and read-only state. Without a handler, newer files stay and the first solution is
/// the answer.
///
/// Nothing is written unless the whole package is sound and every member has a place in the
/// directory: names that lead out of it and symbolic links on the way are errors. Throws
/// HException.
QString openPackagedSolution(const QString& path, const QString& directory,
                             PackagedSolutionHandler* handler);
