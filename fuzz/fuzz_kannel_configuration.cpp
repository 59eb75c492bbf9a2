#include "InputBytes.h"
#include "KannelConfiguration.h"
#include "Require.h"

/// Any text is read, line ends and blanks at the ends of lines say nothing, and each finding is a sentence.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    const QString text = QString::fromUtf8(InputBytes(data, size));
    const QStringList findings = KannelConfiguration::Findings(text);
    for (const QString &finding : findings)
        Require(finding.endsWith(u'.'));
    Require(KannelConfiguration::Findings(QString(text).replace(u'\n', QStringLiteral("\r\n"))) == findings);
    return 0;
}
