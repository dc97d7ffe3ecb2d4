#include "cli/mclicommandlist.h"

#include "cli/mcliapply.h"
#include "cli/mcliconvert.h"
#include "cli/mclieffectcheck.h"
#include "cli/mcliinfo.h"
#include "cli/mclilist.h"
#include "cli/mclipaint.h"
#include "cli/mclirender.h"

#include <QTextStream>

MCliCommandList::MCliCommandList()
{
    // One line per command.
    m_commands.push_back(std::make_unique<MCliEffectCheck>());
    m_commands.push_back(std::make_unique<MCliInfo>());
    m_commands.push_back(std::make_unique<MCliRender>());
    m_commands.push_back(std::make_unique<MCliConvert>());
    m_commands.push_back(std::make_unique<MCliApply>());
    m_commands.push_back(std::make_unique<MCliList>());
    m_commands.push_back(std::make_unique<MCliPaint>());
}

MCliCommandList::~MCliCommandList() = default;

MCliCommand* MCliCommandList::find(const QStringList& arguments, QStringList* rest) const
{
    for (const auto& command : m_commands) {
        const QStringList words = command->words();
        if (arguments.size() >= words.size() && arguments.mid(0, words.size()) == words) {
            if (rest)
                *rest = arguments.mid(words.size());
            return command.get();
        }
    }
    return nullptr;
}

void MCliCommandList::printUsage(QTextStream& stream) const
{
    stream << "Usage: quillmere-cli COMMAND [ARGUMENTS]\n\nCommands:\n";
    for (const auto& command : m_commands)
        stream << "  " << command->usage() << "\n      " << command->summary() << "\n";
}
