#include "Failure.h"

#include "Error.h"

using namespace Qt::StringLiterals;

Error Failure(const QString &reason)
{
    return {ErrorNumber::kInvalidArgument, u"Corvane.Gateway"_s, reason};
}
