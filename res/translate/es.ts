<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es_ES" sourcelanguage="zh_CN">
<context>
    <name>CustomTabBar</name>
    <message>
        <source>关闭</source>
        <translation>Cerrar</translation>
    </message>
</context>
<context>
    <name>HomePage</name>
    <message>
        <source>工具</source>
        <translation>Herramientas</translation>
    </message>
    <message>
        <source>最近文件</source>
        <translation>Archivos recientes</translation>
    </message>
    <message>
        <source>打开一个 PDF 文件，或选择下方的工具开始。</source>
        <translation>Abra un archivo PDF o elija una herramienta para empezar.</translation>
    </message>
    <message>
        <source>打开 PDF 文件</source>
        <translation>Abrir archivo PDF</translation>
    </message>
    <message>
        <source>暂无最近文件</source>
        <translation>Aún no hay archivos recientes</translation>
    </message>
    <message>
        <source>打开的 PDF 文件会显示在这里</source>
        <translation>Los archivos PDF que abra aparecerán aquí</translation>
    </message>
    <message>
        <source>PDF 文件 (*.pdf)</source>
        <translation>Archivos PDF (*.pdf)</translation>
    </message>
</context>
<context>
    <name>ImageToPdfPage</name>
    <message>
        <source>图像转PDF</source>
        <translation>Imágenes a PDF</translation>
    </message>
    <message>
        <source>将图像合成为 PDF 文件。</source>
        <translation>Cree archivos PDF a partir de imágenes.</translation>
    </message>
</context>
<context>
    <name>LanguageDialog</name>
    <message>
        <source>简体中文</source>
        <translation>Chino simplificado</translation>
    </message>
    <message>
        <source>英语</source>
        <translation>Inglés</translation>
    </message>
    <message>
        <source>德语</source>
        <translation>Alemán</translation>
    </message>
    <message>
        <source>法语</source>
        <translation>Francés</translation>
    </message>
    <message>
        <source>西班牙语</source>
        <translation>Español</translation>
    </message>
    <message>
        <source>阿拉伯语</source>
        <translation>Árabe</translation>
    </message>
    <message>
        <source>日语</source>
        <translation>Japonés</translation>
    </message>
    <message>
        <source>应用</source>
        <translation>Aplicar</translation>
    </message>
    <message>
        <source>语言设置</source>
        <translation>Configuración de idioma</translation>
    </message>
    <message>
        <source>选择 Quillora 的界面语言</source>
        <translation>Elija el idioma de la interfaz de Quillora</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>切换语言？</source>
        <translation>¿Cambiar de idioma?</translation>
    </message>
    <message>
        <source>界面语言将切换为“%1”。</source>
        <translation>El idioma de la interfaz cambiará a «%1».</translation>
    </message>
    <message>
        <source>当前打开的工具标签页将关闭。</source>
        <translation>Se cerrarán las pestañas de herramientas abiertas.</translation>
    </message>
    <message>
        <source>切换</source>
        <translation>Cambiar</translation>
    </message>
    <message>
        <source>无法切换语言</source>
        <translation>No se puede cambiar de idioma</translation>
    </message>
    <message>
        <source>未能加载所选语言的翻译文件。</source>
        <translation>No se pudo cargar el archivo de traducción del idioma elegido.</translation>
    </message>
</context>
<context>
    <name>MainPage</name>
    <message>
        <source>首页</source>
        <translation>Inicio</translation>
    </message>
    <message>
        <source>压缩PDF</source>
        <translation>Comprimir PDF</translation>
    </message>
    <message>
        <source>PDF转为Office</source>
        <translation>PDF a Office</translation>
    </message>
    <message>
        <source>Office转为PDF</source>
        <translation>Office a PDF</translation>
    </message>
    <message>
        <source>图像转PDF</source>
        <translation>Imágenes a PDF</translation>
    </message>
    <message>
        <source>PDF转为图像</source>
        <translation>PDF a imágenes</translation>
    </message>
    <message>
        <source>PDF解密</source>
        <translation>Descifrar PDF</translation>
    </message>
    <message>
        <source>PDF加密</source>
        <translation>Cifrar PDF</translation>
    </message>
    <message>
        <source>合并PDF</source>
        <translation>Combinar PDF</translation>
    </message>
</context>
<context>
    <name>ModernMessageBox</name>
    <message>
        <source>取消</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>不保存</source>
        <translation>No guardar</translation>
    </message>
    <message>
        <source>确定</source>
        <translation>Aceptar</translation>
    </message>
</context>
<context>
    <name>OfficeToPdfPage</name>
    <message>
        <source>Office转为PDF</source>
        <translation>Office a PDF</translation>
    </message>
    <message>
        <source>将 Word、PowerPoint 和 Excel 文件转换为 PDF</source>
        <translation>Convierta archivos de Word, PowerPoint y Excel a PDF</translation>
    </message>
</context>
<context>
    <name>PdfCompressPage</name>
    <message>
        <source>压缩PDF</source>
        <translation>Comprimir PDF</translation>
    </message>
    <message>
        <source>减小 PDF 文件的体积，便于发送和保存。</source>
        <translation>Reduzca el tamaño de los archivos PDF para enviarlos y guardarlos fácilmente.</translation>
    </message>
</context>
<context>
    <name>PdfConvertPage</name>
    <message>
        <source>PDF 转为图像</source>
        <translation>PDF a imágenes</translation>
    </message>
    <message>
        <source>将 PDF 的每一页保存为图像。</source>
        <translation>Guarde cada página de un PDF como imagen.</translation>
    </message>
</context>
<context>
    <name>PdfDecryPage</name>
    <message>
        <source>解锁PDF</source>
        <translation>Desbloquear PDF</translation>
    </message>
    <message>
        <source>移除 PDF 文件的密码。</source>
        <translation>Quite la contraseña de los archivos PDF.</translation>
    </message>
</context>
<context>
    <name>PdfDocumentView</name>
    <message>
        <source>正在渲染第 %1 页…</source>
        <translation>Mostrando la página %1…</translation>
    </message>
</context>
<context>
    <name>PdfEncryPage</name>
    <message>
        <source>加密PDF</source>
        <translation>Cifrar PDF</translation>
    </message>
    <message>
        <source>用密码保护 PDF 文件。</source>
        <translation>Proteja archivos PDF con una contraseña.</translation>
    </message>
</context>
<context>
    <name>PdfMergePage</name>
    <message>
        <source>合并PDF</source>
        <translation>Combinar PDF</translation>
    </message>
    <message>
        <source>将多个 PDF 文件合并为一个。</source>
        <translation>Combine varios archivos PDF en uno.</translation>
    </message>
</context>
<context>
    <name>PdfToOfficePage</name>
    <message>
        <source>PDF转为Office</source>
        <translation>PDF a Office</translation>
    </message>
    <message>
        <source>将 PDF 转换为可编辑的 Office 文档。</source>
        <translation>Convierta archivos PDF en documentos de Office editables.</translation>
    </message>
</context>
<context>
    <name>PdfViewerWidget</name>
    <message>
        <source>此 PDF 已加密，请输入密码：</source>
        <translation>Este PDF está cifrado. Introduzca la contraseña:</translation>
    </message>
    <message>
        <source>密码错误，请重新输入 PDF 密码：</source>
        <translation>Contraseña incorrecta. Vuelva a introducir la contraseña del PDF:</translation>
    </message>
    <message>
        <source>无法打开 PDF</source>
        <translation>No se puede abrir el PDF</translation>
    </message>
    <message>
        <source>文件不存在或已被移动。</source>
        <translation>El archivo no existe o se ha movido.</translation>
    </message>
    <message>
        <source>PDF 需要密码。</source>
        <translation>El PDF requiere una contraseña.</translation>
    </message>
    <message>
        <source>PDF 密码错误。</source>
        <translation>La contraseña del PDF es incorrecta.</translation>
    </message>
    <message>
        <source>PDF 已损坏或格式不受支持。</source>
        <translation>El PDF está dañado o su formato no es compatible.</translation>
    </message>
    <message>
        <source>页面渲染失败。</source>
        <translation>No se pudo mostrar la página.</translation>
    </message>
    <message>
        <source>无法写入目标文件，请检查权限和磁盘空间。</source>
        <translation>No se pudo escribir el archivo de destino. Compruebe los permisos y el espacio en disco.</translation>
    </message>
    <message>
        <source>操作未完成。</source>
        <translation>La operación no se completó.</translation>
    </message>
    <message>
        <source>需要密码</source>
        <translation>Se requiere contraseña</translation>
    </message>
    <message>
        <source>确定</source>
        <translation>Aceptar</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Cancelar</translation>
    </message>
</context>
<context>
    <name>TitleBar</name>
    <message>
        <source>Quillora</source>
        <translation>Quillora</translation>
    </message>
    <message>
        <source>语言设置</source>
        <translation>Configuración de idioma</translation>
    </message>
    <message>
        <source>最小化</source>
        <translation>Minimizar</translation>
    </message>
    <message>
        <source>关闭</source>
        <translation>Cerrar</translation>
    </message>
    <message>
        <source>还原</source>
        <translation>Restaurar</translation>
    </message>
    <message>
        <source>最大化</source>
        <translation>Maximizar</translation>
    </message>
</context>
</TS>
