#pragma once

#include "TestFolder.h"
#include "build/BuildTestSupport.h"
#include "build/log/BuildLogModel.h"
#include "build/projectsystem/MSP430ProjectSystem.h"
#include "build/system/MSP430BuildSystem.h"
#include "build/workspace/Workspace.h"
#include "projects/solution/Builder.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

inline void PrintTo(const QString& text, std::ostream* out)
{
    *out << '"' << text.toStdString() << '"';
}

/// Notes what a build asks for, and makes the outputs of commands as if they had run.
class RecordingBuilder : public Builder {
public:
    void beginGroup(ProjectElement*, const QString& title, unsigned) override { titles << title; }
    void endGroup(ProjectElement*) override { }
    void init() override { m_outputs.clear(); }
    void setTotalSteps(ProjectElement*, int count) override { totalSteps = count; }
    void setDirectory(const QString& directory) override { directories << directory; }
    void setCommand(const QStringList& command) override { m_command = command; }
    void setEnvironment(const QStringList&) override { }
    void setOutputFiles(const QStringList& files) override { m_outputs = files; }
    void setTemporaryFiles(const QStringList&) override { }
    void doit() override
    {
        commands << m_command;
        outputs << m_outputs;
        for (const QString& file : m_outputs) {
            std::filesystem::create_directories(
                std::filesystem::path(file.toStdString()).parent_path());
            writeFile(file, "made");
        }
        if (onCommand)
            onCommand(m_command);
    }
    void nextStep() override { ++steps; }
    void error(const QString& text) override { errors << text; }
    void note(const QString& text) override { messages << text; }
    void success(const QString& text) override { messages << text; }
    void message(const QString& text) override { messages << text; }

    /// The commands whose program has that name, one a line, without the program's path.
    QStringList commandsOf(const QString& tool) const
    {
        QStringList found;
        for (const QStringList& command : commands)
            if (command.first().section(u'/', -1) == tool)
                found << command.mid(1).join(u' ');
        return found;
    }
    void clear() { *this = RecordingBuilder(); }

    QStringList titles;
    QStringList directories;
    QList<QStringList> commands;
    QList<QStringList> outputs;
    QStringList errors;
    QStringList messages;
    int totalSteps = 0;
    int steps = 0;
    std::function<void(const QStringList&)> onCommand;

private:
    QStringList m_command;
    QStringList m_outputs;
};

/// A workspace with settings and a root of its own, and solutions in a folder.
class WorkspaceTest : public testing::Test {
protected:
    WorkspaceTest()
        : m_workspace(
            {.root = QStringLiteral(GANTRY_ROOT_TREE), .settingsFolder = path("settings")})
    {
    }

    QString path(const std::string& name) const { return QString::fromStdString(m_folder / name); }
    ProjectElement* load(const std::string& content, const std::string& name = "s.kvp")
    {
        m_folder.write(name,
                       "<!DOCTYPE GantryBench_Project_File>\n<solution Name=\"s\" version=\"2\">\n"
                           + content + "</solution>\n");
        projects().loadSolution(path(name), nullptr, nullptr);
        return projects().solutionElement();
    }
    MSP430ProjectSystem& projects() { return m_workspace.projects(); }
    MSP430BuildSystem& builds() { return m_workspace.builds(); }
    ProjectElement* project(const QString& name) { return projects().findProject(nullptr, name); }
    void set(ProjectElement* element, const char* name, const QString& value,
             const QString& configuration = CommonConfiguration)
    {
        projects().setProperty(element, QLatin1String(name), configuration, value, false);
    }
    BuildResult build(ProjectElement* element, unsigned mode = 0,
                      const QString& configuration = u"Debug"_s)
    {
        return builds().build(element, configuration, &m_builder, mode, false, true);
    }

    TestFolder m_folder;
    Workspace m_workspace;
    RecordingBuilder m_builder;
};
