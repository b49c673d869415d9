#include "shell/textosDoQt.h"

#include "core/literais.h"
#include "core/modTraducoes.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>

namespace {

struct Par {
    QStringView brasileiro, europeu;
};
// Qt speaks Portuguese as in Brazil only. Words of the same gender stand for one another, so that sentences hold.
constexpr Par palavras[] = {
    {u"arquivo", u"ficheiro"},
    {u"Arquivo", u"Ficheiro"},
    {u"Salvar", u"Guardar"},
    {u"salvar", u"guardar"},
    {u"E&xcluir", u"&Eliminar"},
    {u"Excluir", u"Eliminar"},
    {u"excluir", u"eliminar"},
    {u"Recor&tar", u"Cor&tar"},
    {u"Desfazer", u"Anular"},
    {u"Selecionar", u"Seleccionar"},
    {u"Seleção", u"Selecção"},
    {u"seleção", u"selecção"},
    {u"atual", u"actual"},
    {u"corret", u"correct"},
    {u"diret", u"direct"},
    {u"Exibição", u"Vista"},
    {u"modo de exibição", u"modo de vista"},
    {u"Nome de exibição", u"Nome visível"},
    {u"Meu computador", u"O meu computador"},
    {u"aplicativo", u"programa"},
    {u"usuário", u"utilizador"},
    {u"conexão", u"ligação"},
    {u"Conexão", u"Ligação"},
    {u"Próxima", u"Seguinte"},
    {u"Colorido", u"A cores"},
    {u"Descartar", u"Rejeitar"},
};

class TextosDoQt : public QTranslator {
public:
    TextosDoQt(bool europeu, QObject *pai) : QTranslator(pai), m_europeu(europeu) {}

    QString translate(const char *contexto, const char *original, const char *distincao, int n) const override {
        QString texto = QTranslator::translate(contexto, original, distincao, n);
        if (m_europeu && !texto.isEmpty())
            for (const Par &p : palavras)
                texto.replace(p.brasileiro.data(), p.brasileiro.size(), p.europeu.data(), p.europeu.size());
        return texto;
    }

private:
    bool m_europeu;
};

} // namespace

namespace textosDoQt {

void aplicar(const QString &lingua) {
    const QString nome = u"textosDoQt"_s;
    delete qApp->findChild<QTranslator *>(nome, Qt::FindDirectChildrenOnly);
    const bool europeu = lingua.compare(u"PT"_s, Qt::CaseInsensitive) == 0;
    auto *tradutor = new TextosDoQt(europeu, qApp);
    tradutor->setObjectName(nome);
    const QString pasta = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
    for (const QString &candidato : modTraducoes::nomesDaLingua(lingua))
        if (!candidato.isEmpty() && tradutor->load(u"qtbase_"_s + candidato, pasta)) {
            QCoreApplication::installTranslator(tradutor);
            return;
        }
    delete tradutor; // Qt's own English stands
}

} // namespace textosDoQt
