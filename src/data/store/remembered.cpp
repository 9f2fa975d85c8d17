#include "data/store/remembered.h"

namespace tally::data {

QString result_key(const QString &question, const QVariantList &params)
{
    QString key = question;
    for (const QVariant &param : params) {
        const QString text = param.typeId() == QMetaType::Double
                                 ? QString::number(param.toDouble(), 'g', 17)
                                 : param.toString();
        key +=
            QStringLiteral("|%1:").arg(text.size()) + text; // unambiguous, whatever the texts hold
    }
    return key;
}

} // namespace tally::data
