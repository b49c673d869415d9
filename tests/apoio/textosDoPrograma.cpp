#include "tests/apoio/textosDoPrograma.h"

#include "core/estado.h"
#include "core/modErros.h"
#include "core/modTraducoes.h"
#include "devicestate/condicoes.h"
#include "devicestate/entradas.h"
#include "devicestate/familiaSensUI.h"
#include "logger/views/familiaLoggers.h"
#include "platform/forms/registoForms.h"
#include "shell/apresentadorQt.h"
#include "shell/arranque.h"
#include "shell/frmMain.h"
#include "tests/apoio/espera.h"
#include "tests/apoio/instalacao.h"
#include "tests/apoio/widgets.h"
#include "views/familiaGraficos.h"
#include "views/forms/formOpccoesPontos.h"

#include <QApplication>
#include <QDirIterator>
#include <QFileInfo>
#include <QPointer>
#include <QRegularExpression>
#include <QTimer>

#include <typeinfo>

namespace {

using namespace textosDasFontes;

// Says yes to everything; nothing a form asks while it opens may stop it.
class TudoBem : public Dialogos {
public:
    void mensagem(const QString &, Estilo) override {}
    bool pergunta(const QString &) override { return false; }
    int escolher(const QString &, const QStringList &, int) override { return -1; }
    QString abrirFicheiro(const QString &, const QString &) override { return {}; }
    QString gravarFicheiro(const QString &, const QString &, const QString &) override { return {}; }
    QString escolherPasta(const QString &) override { return {}; }
    bool mensagemComBotao(const QString &, const QString &) override { return false; }
    bool abrirPasta(const QString &) override { return true; }
};

// What was seen while every form was opened: the texts asked for, and which classes each form is made of.
struct Visto {
    Textos pedidos;
    QHash<QString, QSet<QString>> formsDaClasse; // class in small letters -> forms
};

void notarClasses(const QObject *objecto, const QString &form, Visto &visto) {
    static const QRegularExpression numero(u"^\\d+"_s);
    for (const QMetaObject *m = objecto->metaObject(); m; m = m->superClass())
        visto.formsDaClasse[QString::fromUtf8(m->className()).toLower()].insert(form);
    // A class without signals of its own only shows here.
    visto.formsDaClasse[QString::fromUtf8(typeid(*objecto).name()).remove(numero).toLower()].insert(form);
    for (const QObject *filho : objecto->children())
        notarClasses(filho, form, visto);
}

QList<MembroGrafico> graficos() {
    QList<MembroGrafico> todos;
    for (const auto &familia : {familiaGraficos(), familiaSensUI::graficos(), familiaLoggers::graficos()})
        todos.append(QList<MembroGrafico>(familia.begin(), familia.end()));
    for (const entradas::Especie &e : entradas::especies())
        todos.append(e.grafico);
    for (const condicoes::Especie &e : condicoes::especies())
        todos.append(e.grafico);
    return todos;
}

// The point form of every chart that has one.
void abrirPontos(Visto &visto) {
    for (const MembroGrafico &m : graficos())
        if (m.pontos) {
            const FormOpccoesPontos form(*m.pontos, PontoActual(), nullptr, nullptr);
            notarClasses(&form, m.pontos->form.toString(), visto);
        }
}

// What is asked for once rows are drawn or printed, and stands in the tables of the views.
void juntarTabelas(Textos &pedidos) {
    const auto pedir = [&](QStringView form, QStringView chave, QStringView omissao) {
        pedidos[{modTraducoes::seccaoDe(form.toString()), chave.toString()}] = omissao.toString();
    };
    for (const MembroGrafico &m : graficos()) {
        pedir(m.form, u"PrintTitle", m.tituloImpressao);
        if (m.linhaUnica != LinhaUnica::ComLimites)
            continue;
        pedir(m.formLimites.isEmpty() ? m.form : m.formLimites, u"Max", u"Max");
        pedir(m.formLimites.isEmpty() ? m.form : m.formLimites, u"Min", u"Min");
    }
    for (const auto &familia : {familiaHistogramas(), familiaSensUI::histogramas(), familiaLoggers::histogramas()})
        for (const MembroHistograma &m : familia)
            pedir(m.form, u"PrintTitle", m.tituloImpressao);
    for (const auto &familia : {familiaListagens(), familiaSensUI::listagens(), familiaLoggers::listagens()})
        for (const MembroListagem &m : familia) {
            pedir(m.form, m.chaveImpressao, m.tituloImpressao);
            for (const CabecalhoListagem &c : m.cabecalhos)
                pedir(m.form, c.chave, c.omissao);
            for (const ColunaListagem &c : m.colunas)
                if (!c.rotulo.isEmpty())
                    pedir(m.form, c.chaveRotulo, c.omissaoRotulo);
        }
}

Visto abrirTudo() {
    Visto visto;
    Instalacao instalacao;
    instalacao.sensores(
        {{u"A"_s, u"a"_s, u"P 1250C"_s}, {u"B"_s, u"b"_s, u"P 1250R"_s}, {u"C"_s, u"c"_s, u"P 1250K"_s}});
    TudoBem dialogos;
    ApresentadorQt apresentador;
    estado().ambiente.dialogos = &dialogos;
    estado().ambiente.apresentador = &apresentador;
    estado().ambiente.textoPedido = [&](const QString &seccao, const QString &chave, const QString &omissao) {
        visto.pedidos[{seccao, chave}] = omissao;
    };
    modMain::registarForms(registoForms());
    frmMain principal;
    utilizador::mostrar(&principal);
    QTimer fecho; // modal forms wait for somebody
    QObject::connect(&fecho, &QTimer::timeout, qApp, [] {
        if (QWidget *modal = QApplication::activeModalWidget())
            modal->close();
    });
    fecho.start(20);
    for (const QString &nome : registoForms().nomes()) {
        const QPointer<QWidget> form = registoForms().abrir(nome);
        deixarPassar(30);
        if (!form)
            continue;
        notarClasses(form, nome, visto);
        (form->isWindow() ? form.data() : form->parentWidget())->close();
    }
    abrirPontos(visto);
    juntarTabelas(visto.pedidos);
    modErros::TratarErro(u"teste"_s, u"teste"_s, u"1"_s);
    deixarPassar(30);
    estado().ambiente.textoPedido = nullptr;
    return visto;
}

} // namespace

namespace textosDasFontes {

Textos textosDoPrograma(const QString &pastaDasFontes) {
    const Visto visto = abrirTudo();
    Textos usados = visto.pedidos;
    QDirIterator it(pastaDasFontes, {u"*.cpp"_s, u"*.h"_s}, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QFileInfo ficheiro(it.next());
        const QString codigo = QString::fromUtf8(Instalacao::lerFicheiro(ficheiro.filePath()));
        juntarDirectos(codigo, usados);
        const Fonte fonte = analisar(codigo);
        const QString classe = ficheiro.baseName().section(u'_', 0, 0);
        QStringList seccoes;
        if (!fonte.seccao.isEmpty())
            seccoes.append(fonte.seccao);
        else if (classe.startsWith(u"frm"))
            seccoes.append(u"VISTREL_"_s + classe);
        else
            for (const QString &form : visto.formsDaClasse.value(classe.toLower()))
                seccoes.append(u"VISTREL_"_s + form);
        for (const Texto &t : fonte.textos)
            for (const QString &s : std::as_const(seccoes))
                if (!usados.contains({s, t.chave}))
                    usados[{s, t.chave}] = t.omissao;
    }
    return usados;
}

} // namespace textosDasFontes
