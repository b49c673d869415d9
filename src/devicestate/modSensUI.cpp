#include "devicestate/modSensUI.h"

#include "core/literais.h"
#include "core/modDoubleTratamento.h"

#include <QStringList>

namespace modSensUI {

DadosSensUI BuscarDadosSensUI(const QString &leitura, const QDateTime &data, const QString &ident,
                              const QString &observacoes, const QString &escala, const QString &sensor) {
    DadosSensUI dados{leitura, sensor, escala, {}, lerLimites(observacoes), data};
    for (const QString &parte : ident.split(u'X', Qt::SkipEmptyParts))
        dados.ident.push_back(modDoubleTratamento::LerDouble(parte).value_or(std::numeric_limits<double>::quiet_NaN()));
    return dados;
}

} // namespace modSensUI
