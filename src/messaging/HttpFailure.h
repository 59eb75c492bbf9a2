#pragma once

#include <QByteArray>
#include <QString>

struct HttpRequest;

/// What the user is told about a post that did not succeed.
namespace HttpFailure {

/// How the transfer ended, as libcurl and the header of the reply have it.
struct Facts
{
    /// libcurl's CURLcode.
    int code = 0;
    /// libcurl's own words, which say more than the code where the connection could not be secured.
    QByteArray errorText;
    /// The errno of a connection that could not be made, or 0.
    long systemError = 0;
    /// Of the last status line: 404 and "404 Not Found". Until the connection stands, the proxy's.
    long httpCode = 0;
    QByteArray status;
    bool isConnected = false;
    bool isHeaderWhole = false;
    bool isTooLong = false;
};

/// The reason, in a sentence without a full stop; empty when all is well.
[[nodiscard]] QString Describe(const HttpRequest &request, const Facts &facts, const QByteArray &reply);

} // namespace HttpFailure
