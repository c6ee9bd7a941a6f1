#include "cli/PackCommand.h"

#include "build/projectsystem/MSP430ProjectSystem.h"
#include "build/workspace/SolutionPackage.h"
#include "build/workspace/Workspace.h"
#include "cli/Command.h"

#include <cstdio>

int packCommand(std::span<const std::string> arguments)
{
    for (const std::string& word : arguments)
        if (word.starts_with("-"))
            throw UsageError{"unknown option " + word};
    if (arguments.size() != 2)
        throw UsageError{"a solution and the file to write are needed"};
    const Workspace workspace({});
    ProjectSystem& projects = *projectSystem;
    projects.loadSolution(QString::fromLocal8Bit(arguments[0].c_str()), nullptr, nullptr);
    const PackedSolution packed =
        packageSolution(projects, projects.solutionElement(),
                        QString::fromLocal8Bit(arguments[1].c_str()), QString());
    for (const QString& file : packed.leftOut)
        std::fprintf(stderr,
                     "gantry: warning: %s is left out: it doesn't exist or isn't below the "
                     "solution's directory\n",
                     file.toLocal8Bit().constData());
    return 0;
}
