#pragma once

#include "TestFolder.h"
#include "projects/ProjectTestSupport.h"
#include "projects/macros/MacroSystem.h"
#include "projects/solution/ProjectSystem.h"

#include <gtest/gtest.h>

#include <string>

using namespace Qt::Literals::StringLiterals;

/// A project system and its macros in a folder of their own.
class SolutionTest : public testing::Test {
protected:
    SolutionTest()
    {
        macroSystem = &m_macros;
        projectSystem = &m_system;
        m_macros.setSystemMacro(u"BenchDir"_s, u"/bench"_s);
    }
    ~SolutionTest() override
    {
        projectSystem = nullptr;
        macroSystem = nullptr;
    }

    QString path(const std::string& name) const { return QString::fromStdString(m_folder / name); }
    /// Writes a solution with that content and loads it.
    ProjectElement* load(const std::string& content, const std::string& name = "test.kvp")
    {
        writeSolution(name, content);
        m_system.loadSolution(path(name), nullptr, nullptr);
        return m_system.solutionElement();
    }
    void writeSolution(const std::string& name, const std::string& content) const
    {
        m_folder.write(name,
                       "<!DOCTYPE GantryBench_Project_File>\n<solution Name=\""
                           + name.substr(0, name.find('.')) + "\" version=\"2\">\n" + content
                           + "</solution>\n");
    }
    /// What loading a file says: its path without the folder, line and text.
    std::string loadError(const std::string& name)
    {
        try {
            m_system.loadSolution(path(name), nullptr, nullptr);
        } catch (const SolutionLoadError& error) {
            EXPECT_FALSE(m_system.haveSolution());
            return error.path().section(u'/', -1).toStdString() + ":" + std::to_string(error.line())
                + ":" + error.text().toStdString();
        }
        return "loaded";
    }
    std::string textOf(const std::string& name) const { return m_folder.read(name); }

    TestFolder m_folder;
    MacroSystem m_macros;
    ProjectSystem m_system;
};
