#include "tests/apoio/ouro.h"

#include "core/literais.h"

#include <QDir>
#include <QFile>
#include <QProcess>

QByteArray diferencaDoOuro(const QString &nome, const QByteArray &bytes) {
    const QString caminho = QStringLiteral(PASTA_OURO) + u'/' + nome;
    QFile ouro(caminho);
    if (ouro.open(QIODevice::ReadOnly) && ouro.readAll() == bytes)
        return {};
    const QString presente = QDir::temp().filePath(nome);
    QFile ficheiro(presente);
    if (!ficheiro.open(QIODevice::WriteOnly) || ficheiro.write(bytes) != bytes.size())
        return "cannot write " + presente.toUtf8();
    ficheiro.close();
    QProcess diff;
    diff.setProcessChannelMode(QProcess::MergedChannels);
    diff.start(u"diff"_s, {u"-u"_s, u"-a"_s, u"-N"_s, caminho, presente});
    diff.waitForFinished();
    return "differs from the golden file; the present text is " + presente.toUtf8() + '\n' + diff.readAll();
}
