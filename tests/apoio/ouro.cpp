#include "tests/apoio/ouro.h"

#include "core/literais.h"

#include <QFile>
#include <QProcess>

QByteArray diferencaDoOuro(const QString &nome, const QByteArray &bytes) {
    const QString caminho = QStringLiteral(PASTA_OURO) + u'/' + nome;
    QFile ouro(caminho);
    if (ouro.open(QIODevice::ReadOnly) && ouro.readAll() == bytes)
        return {};
    ouro.close();
    if (qEnvironmentVariableIsSet("VISTREL_OURO"))
        return ouro.open(QIODevice::WriteOnly) && ouro.write(bytes) == bytes.size() ? QByteArray()
                                                                                    : "cannot write " + nome.toUtf8();
    QProcess diff;
    diff.setProcessChannelMode(QProcess::MergedChannels);
    diff.start(u"diff"_s, {u"-u"_s, u"-a"_s, u"-N"_s, caminho, u"-"_s});
    diff.write(bytes);
    diff.closeWriteChannel();
    diff.waitForFinished();
    return "differs from the golden file (packaging/refazer-ouro.sh takes the present text)\n" + diff.readAll();
}
