#include "data/insercao.h"

#include "core/literais.h"

Insercao::Insercao(Ligacao &ligacao, const QString &tabela, const QStringList &colunas)
    : m_comando(ligacao, u"INSERT INTO %1 (%2) VALUES (%3)"_s.arg(tabela, colunas.join(u", "),
                                                                  QStringList(colunas.size(), u"?"_s).join(u", "))) {}
