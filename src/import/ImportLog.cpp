#include "import/ImportLog.h"

void ImportLog::add(const QString &line)
{
    if (m_lines.size() < m_limit)
        m_lines.append(line);
    else
        ++m_dropped;
}

QString ImportLog::dumpText() const
{
    QString text = m_lines.join(QLatin1Char('\n'));
    if (m_dropped > 0)
        text += QStringLiteral("\n… %1 more lines not kept").arg(m_dropped);
    return text;
}
