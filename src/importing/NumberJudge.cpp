#include "NumberJudge.h"

#include "Error.h"

#include <QCoreApplication>
#include <QPluginLoader>

using namespace Qt::StringLiterals;

const NumberJudge &NumberJudge::Load(const QString &programFolder)
{
    // A plugin that was loaded before is the same object, which lives until the program ends.
    QPluginLoader loader(programFolder + u"/plugins/numberjudge.so"_s);
    if (const auto *judge = qobject_cast<NumberJudge *>(loader.instance()))
        return *judge;
    throw Error(ErrorNumber::kFileNotFound, u"Corvane.NumberJudge"_s,
                QCoreApplication::translate("NumberJudge", "Phone numbers cannot be judged.") + u"\r\n\r\n"_s +
                    QCoreApplication::translate("NumberJudge", "Please re-install Brevio.") + u" ("_s +
                    loader.errorString() + u')');
}
