#pragma once

#include <QStringList>

#include <memory>
#include <vector>

class MCliCommand;
class QTextStream;

// The commands of quillmere-cli, and the choice of one from the command line.
class MCliCommandList
{
public:
    MCliCommandList();
    ~MCliCommandList();

    // The command whose words begin the arguments, or null; *rest receives
    // what follows its words.
    MCliCommand* find(const QStringList& arguments, QStringList* rest) const;
    void printUsage(QTextStream& stream) const;
    const std::vector<std::unique_ptr<MCliCommand>>& commands() const { return m_commands; }

private:
    std::vector<std::unique_ptr<MCliCommand>> m_commands;
};
