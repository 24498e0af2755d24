#pragma once

#include "support/ChildProcess.h"
#include "support/SiblingProgram.h"

#include <QString>

namespace ambrel {

/// A server in a process of its own that answers live cycles with replies of one kind.
class ReplyServer
{
public:
    /// `photoWidth` is in pixels, 0 for no photos; with more than one variant every cycle brings changed people.
    ReplyServer(int matches, int photoWidth, int variants)
        : m_process(siblingProgram("reply-server"),
                    {QByteArray::number(matches), QByteArray::number(photoWidth), QByteArray::number(variants)}),
          m_url(QString::fromLatin1(m_process.readLine()))
    {
    }

    const QString &url() const { return m_url; }

private:
    ChildProcess m_process;
    QString m_url;
};

} // namespace ambrel
