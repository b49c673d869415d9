#include "tests/apoio/duplos.h"

#include "core/literais.h"

#include <QTest>

void reprovar(const QString &motivo) {
    QTest::qFail(motivo.toUtf8().constData(), __FILE__, __LINE__);
}

bool ApresentadorDeTeste::FormEstaActivo(const QString &nome) {
    return activos.contains(nome);
}

void ApresentadorDeTeste::carregarErro(const QString &, const QString &mensagem) {
    ++carregamentos;
    mensagens.append(mensagem);
    if (tolerante)
        return;
    if (m_esperados.isEmpty())
        return reprovar(u"Unexpected report: "_s + mensagem);
    const QString trecho = m_esperados.takeFirst();
    if (!mensagem.contains(trecho))
        reprovar(u"Report without \"%1\": %2"_s.arg(trecho, mensagem));
}

bool ApresentadorDeTeste::mostrarErro() {
    ++exibicoes;
    if (falhasAoMostrar > 0) {
        --falhasAoMostrar;
        return false;
    }
    if (abrirDeVerdade)
        activos.append(u"frmErro"_s);
    return true;
}

void ApresentadorDeTeste::destacarErro(const QString &mensagem) {
    ++destaques;
    if (mensagens.isEmpty() || mensagem != mensagens.last())
        reprovar(u"The dialog was brought forward with another text: "_s + mensagem);
}

void ApresentadorDeTeste::ampulheta(bool ligada) {
    ampulhetas += ligada ? 1 : -1;
}

void ApresentadorDeTeste::verificar() {
    for (const QString &trecho : std::as_const(m_esperados))
        reprovar(u"Expected report did not come: "_s + trecho);
    if (ampulhetas != 0)
        reprovar(u"The hourglass was left on"_s);
    m_esperados.clear();
}

void ApresentadorDeTeste::esquecer() {
    m_esperados.clear();
    mensagens.clear();
    carregamentos = exibicoes = destaques = 0;
}

void DialogosDeTeste::esperarMensagem(const QString &trecho) {
    m_respostas.append({Tipo::Mensagem, trecho, {}});
}
void DialogosDeTeste::responderPergunta(bool sim, const QString &trecho) {
    m_respostas.append({Tipo::Pergunta, trecho, sim ? u"1"_s : QString()});
}
void DialogosDeTeste::responderEscolha(int qual, const QString &trecho) {
    m_respostas.append({Tipo::Escolha, trecho, QString::number(qual)});
}
void DialogosDeTeste::responderAbrir(const QString &caminho, const QString &trecho) {
    m_respostas.append({Tipo::Abrir, trecho, caminho});
}
void DialogosDeTeste::responderGravar(const QString &caminho, const QString &trecho) {
    m_respostas.append({Tipo::Gravar, trecho, caminho});
}
void DialogosDeTeste::responderPasta(const QString &caminho) {
    m_respostas.append({Tipo::Pasta, {}, caminho});
}

void DialogosDeTeste::premirBotao(const QString &trecho) {
    m_respostas.append({Tipo::Mensagem, trecho, u"1"_s});
}

QString DialogosDeTeste::proxima(Tipo tipo, const QString &texto) {
    textos.append(texto);
    if (tolerante)
        return {};
    if (m_respostas.isEmpty()) {
        reprovar(u"Unexpected dialog: "_s + texto);
        return {};
    }
    const Resposta r = m_respostas.takeFirst();
    if (r.tipo != tipo || !texto.contains(r.trecho))
        reprovar(u"Another dialog was expected (\"%1\"): %2"_s.arg(r.trecho, texto));
    return r.tipo == tipo ? r.valor : QString();
}

void DialogosDeTeste::mensagem(const QString &texto, Estilo estilo) {
    estilos.append(estilo);
    proxima(Tipo::Mensagem, texto);
}

bool DialogosDeTeste::pergunta(const QString &texto) {
    // Whatever is asked destroys something, and says what in lines of its own.
    if (!texto.contains(u'\n'))
        reprovar(u"The question does not name what it destroys: "_s + texto);
    return !proxima(Tipo::Pergunta, texto).isEmpty();
}

int DialogosDeTeste::escolher(const QString &texto, const QStringList &opcoes, int) {
    ultimasOpcoes = opcoes;
    bool respondida = false;
    const int qual = proxima(Tipo::Escolha, texto).toInt(&respondida);
    return respondida ? qual : -1;
}

QString DialogosDeTeste::abrirFicheiro(const QString &filtro, const QString &pasta) {
    ultimoFiltro = filtro;
    ultimaPasta = pasta;
    return proxima(Tipo::Abrir, filtro);
}

QString DialogosDeTeste::gravarFicheiro(const QString &nomeProposto, const QString &pasta, const QString &filtro) {
    ultimoFiltro = filtro;
    ultimaPasta = pasta;
    return proxima(Tipo::Gravar, nomeProposto);
}

QString DialogosDeTeste::escolherPasta(const QString &inicio) {
    ultimaPasta = inicio;
    return proxima(Tipo::Pasta, inicio);
}

bool DialogosDeTeste::mensagemComBotao(const QString &texto, const QString &botao) {
    estilos.append(Estilo::Informacao);
    return !proxima(Tipo::Mensagem, texto + u" [" + botao + u']').isEmpty();
}

bool DialogosDeTeste::abrirPasta(const QString &pasta) {
    pastas.append(pasta);
    return !semProgramaDePastas;
}

void DialogosDeTeste::verificar() {
    for (const Resposta &r : std::as_const(m_respostas))
        reprovar(u"Expected dialog did not come: "_s + (r.trecho.isEmpty() ? r.valor : r.trecho));
    m_respostas.clear();
}

void DialogosDeTeste::esquecer() {
    m_respostas.clear();
    textos.clear();
    estilos.clear();
}
