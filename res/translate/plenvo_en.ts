<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="zh_CN">
<context>
    <name>CustomTabBar</name>
    <message>
        <source>关闭</source>
        <translation>Close</translation>
    </message>
</context>
<context>
    <name>DocumentPrinting</name>
    <message>
        <source>打印 PDF</source>
        <translation>Print the PDF</translation>
    </message>
    <message>
        <source>打印失败</source>
        <translation>Printing failed</translation>
    </message>
    <message>
        <source>无法启动打印任务。</source>
        <translation>The print job could not be started.</translation>
    </message>
    <message>
        <source>打印未完成</source>
        <translation>Printing was not completed</translation>
    </message>
</context>
<context>
    <name>FileDropZoneWidget</name>
    <message>
        <source>PDF 文件 (*.pdf)</source>
        <translation>PDF files (*.pdf)</translation>
    </message>
    <message>
        <source>选择 PDF</source>
        <translation>Choose PDF</translation>
    </message>
    <message>
        <source>从你的桌面上添加或拖放PDF文件，开始转换。</source>
        <translation>Add PDF files or drop them here from your desktop to start converting.</translation>
    </message>
    <message>
        <source>添加文件</source>
        <translation>Add files</translation>
    </message>
</context>
<context>
    <name>FileListItem</name>
    <message>
        <source>拖动排序</source>
        <translation>Drag to reorder</translation>
    </message>
</context>
<context>
    <name>FileListWidget</name>
    <message>
        <source>PDF 文件 (*.pdf)</source>
        <translation>PDF files (*.pdf)</translation>
    </message>
    <message>
        <source>选择 PDF</source>
        <translation>Choose PDF</translation>
    </message>
    <message>
        <source>添加文件</source>
        <translation>Add files</translation>
    </message>
    <message>
        <source>清除全部</source>
        <translation>Clear all</translation>
    </message>
</context>
<context>
    <name>FileLocationSelector</name>
    <message>
        <source>文件保存位置</source>
        <translation>File save location</translation>
    </message>
    <message>
        <source>原始文件夹</source>
        <translation>Source folder</translation>
    </message>
    <message>
        <source>桌面</source>
        <translation>Desktop</translation>
    </message>
    <message>
        <source>文档</source>
        <translation>Documents</translation>
    </message>
    <message>
        <source>选择其他文件夹…</source>
        <translation>Choose another folder…</translation>
    </message>
    <message>
        <source>选择文件保存位置</source>
        <translation>Choose where to save the files</translation>
    </message>
    <message>
        <source>自定义文件夹</source>
        <translation>Custom folder</translation>
    </message>
</context>
<context>
    <name>FileSize</name>
    <message>
        <source>%1 B</source>
        <translation>%1 B</translation>
    </message>
    <message>
        <source>%1 KB</source>
        <translation>%1 KB</translation>
    </message>
    <message>
        <source>%1 MB</source>
        <translation>%1 MB</translation>
    </message>
    <message>
        <source>%1 GB</source>
        <translation>%1 GB</translation>
    </message>
</context>
<context>
    <name>HomePage</name>
    <message>
        <source>工具</source>
        <translation>Tools</translation>
    </message>
    <message>
        <source>最近文件</source>
        <translation>Recent Files</translation>
    </message>
    <message>
        <source>打开一个 PDF 文件，或选择下方的工具开始。</source>
        <translation>Open a PDF file, or pick a tool below to get started.</translation>
    </message>
    <message>
        <source>打开 PDF 文件</source>
        <translation>Open PDF File</translation>
    </message>
    <message>
        <source>暂无最近文件</source>
        <translation>No recent files yet</translation>
    </message>
    <message>
        <source>打开的 PDF 文件会显示在这里</source>
        <translation>PDF files you open will appear here</translation>
    </message>
    <message>
        <source>PDF 文件 (*.pdf)</source>
        <translation>PDF Files (*.pdf)</translation>
    </message>
</context>
<context>
    <name>ImageToPdfOptionsPanel</name>
    <message>
        <source>图像转PDF</source>
        <translation>Images to PDF</translation>
    </message>
    <message>
        <source>转换</source>
        <translation>Convert</translation>
    </message>
    <message>
        <source>纵向</source>
        <translation>Portrait</translation>
    </message>
    <message>
        <source>横向</source>
        <translation>Landscape</translation>
    </message>
    <message>
        <source>页面大小</source>
        <translation>Page size</translation>
    </message>
    <message>
        <source>A4</source>
        <translation>A4</translation>
    </message>
    <message>
        <source>Letter(US)</source>
        <translation>Letter (US)</translation>
    </message>
    <message>
        <source>页边距选项</source>
        <translation>Margins</translation>
    </message>
    <message>
        <source>无</source>
        <translation>None</translation>
    </message>
    <message>
        <source>窄</source>
        <translation>Narrow</translation>
    </message>
    <message>
        <source>宽</source>
        <translation>Wide</translation>
    </message>
    <message>
        <source>页面方向</source>
        <translation>Page orientation</translation>
    </message>
    <message>
        <source>更多选项</source>
        <translation>More options</translation>
    </message>
    <message>
        <source>转换为单个PDF</source>
        <translation>Combine into one PDF</translation>
    </message>
    <message>
        <source>每张图像都将保存为单个PDF</source>
        <translation>When off, each image becomes a PDF of its own</translation>
    </message>
</context>
<context>
    <name>ImageToPdfPage</name>
    <message>
        <source>添加或拖拽图像文件进行转换。</source>
        <translation>Add images or drop them here to convert them.</translation>
    </message>
    <message>
        <source>图像文件 (*.jpg *.jpeg *.png)</source>
        <translation>Image files (*.jpg *.jpeg *.png)</translation>
    </message>
    <message>
        <source>选择图片</source>
        <translation>Choose images</translation>
    </message>
</context>
<context>
    <name>LanguageDialog</name>
    <message>
        <source>简体中文</source>
        <translation>Simplified Chinese</translation>
    </message>
    <message>
        <source>英语</source>
        <translation>English</translation>
    </message>
    <message>
        <source>德语</source>
        <translation>German</translation>
    </message>
    <message>
        <source>法语</source>
        <translation>French</translation>
    </message>
    <message>
        <source>西班牙语</source>
        <translation>Spanish</translation>
    </message>
    <message>
        <source>阿拉伯语</source>
        <translation>Arabic</translation>
    </message>
    <message>
        <source>日语</source>
        <translation>Japanese</translation>
    </message>
    <message>
        <source>应用</source>
        <translation>Apply</translation>
    </message>
    <message>
        <source>语言设置</source>
        <translation>Language Settings</translation>
    </message>
    <message>
        <source>选择 Quillora 的界面语言</source>
        <translation>Choose the display language of Quillora</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>切换语言？</source>
        <translation>Switch Language?</translation>
    </message>
    <message>
        <source>界面语言将切换为“%1”。</source>
        <translation>The display language will be switched to “%1”.</translation>
    </message>
    <message>
        <source>当前打开的工具标签页将关闭。</source>
        <translation>Tool tabs that are open now will be closed.</translation>
    </message>
    <message>
        <source>切换</source>
        <translation>Switch</translation>
    </message>
    <message>
        <source>无法切换语言</source>
        <translation>Cannot Switch Language</translation>
    </message>
    <message>
        <source>未能加载所选语言的翻译文件。</source>
        <translation>The translation file of the selected language could not be loaded.</translation>
    </message>
</context>
<context>
    <name>MainPage</name>
    <message>
        <source>首页</source>
        <translation>Home</translation>
    </message>
    <message>
        <source>压缩PDF</source>
        <translation>Compress PDF</translation>
    </message>
    <message>
        <source>PDF转为Office</source>
        <translation>PDF to Office</translation>
    </message>
    <message>
        <source>Office转为PDF</source>
        <translation>Office to PDF</translation>
    </message>
    <message>
        <source>图像转PDF</source>
        <translation>Images to PDF</translation>
    </message>
    <message>
        <source>PDF转为图像</source>
        <translation>PDF to Images</translation>
    </message>
    <message>
        <source>PDF解密</source>
        <translation>Decrypt PDF</translation>
    </message>
    <message>
        <source>PDF加密</source>
        <translation>Encrypt PDF</translation>
    </message>
    <message>
        <source>合并PDF</source>
        <translation>Merge PDF</translation>
    </message>
    <message>
        <source>任务仍在进行</source>
        <translation>Tasks are still running</translation>
    </message>
    <message>
        <source>关闭程序将停止尚未完成的任务。</source>
        <translation>Closing the program stops the tasks that are not finished.</translation>
    </message>
    <message>
        <source>停止并关闭</source>
        <translation>Stop and close</translation>
    </message>
</context>
<context>
    <name>ModernComboBox</name>
    <message>
        <source>选择位置...</source>
        <translation>Choose location…</translation>
    </message>
    <message>
        <source>选择文件夹</source>
        <translation>Choose folder</translation>
    </message>
</context>
<context>
    <name>ModernMessageBox</name>
    <message>
        <source>取消</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>不保存</source>
        <translation>Don’t Save</translation>
    </message>
    <message>
        <source>确定</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>OfficeToPdfOptionsPanel</name>
    <message>
        <source>Office转为PDF</source>
        <translation>Office to PDF</translation>
    </message>
    <message>
        <source>转换</source>
        <translation>Convert</translation>
    </message>
    <message>
        <source>将 Word、PowerPoint 和 Excel 文件转换为 PDF</source>
        <translation>Convert Word, PowerPoint and Excel files to PDF</translation>
    </message>
</context>
<context>
    <name>OfficeToPdfPage</name>
    <message>
        <source>添加或拖拽文件进行转换。</source>
        <translation>Add files or drop them here to convert them.</translation>
    </message>
</context>
<context>
    <name>OfficeToolPage</name>
    <message>
        <source>暂不支持</source>
        <translation>Not supported yet</translation>
    </message>
    <message>
        <source>此版本尚不能转换 Office 文件。</source>
        <translation>This version cannot convert Office files yet.</translation>
    </message>
</context>
<context>
    <name>OutputLocation</name>
    <message>
        <source>原始文件</source>
        <translation>Original folder</translation>
    </message>
    <message>
        <source>桌面</source>
        <translation>Desktop</translation>
    </message>
    <message>
        <source>Quillora文件</source>
        <translation>Quillora folder</translation>
    </message>
    <message>
        <source>选择位置...</source>
        <translation>Choose location…</translation>
    </message>
</context>
<context>
    <name>PageCardDelegate</name>
    <message>
        <source>无法显示此页面</source>
        <translation>This page cannot be shown</translation>
    </message>
</context>
<context>
    <name>PageGridZoomControl</name>
    <message>
        <source>缩小</source>
        <translation>Zoom out</translation>
    </message>
    <message>
        <source>放大</source>
        <translation>Zoom in</translation>
    </message>
</context>
<context>
    <name>PageManagerDelegate</name>
    <message>
        <source>正在生成预览…</source>
        <translation>Generating preview…</translation>
    </message>
    <message>
        <source>在此处插入页面</source>
        <translation>Insert pages here</translation>
    </message>
    <message>
        <source>取消此处的拆分</source>
        <translation>Do not split here</translation>
    </message>
    <message>
        <source>在此处拆分</source>
        <translation>Split here</translation>
    </message>
    <message>
        <source>取消选择页面</source>
        <translation>Deselect page</translation>
    </message>
    <message>
        <source>选择页面</source>
        <translation>Select page</translation>
    </message>
    <message>
        <source>预览页面</source>
        <translation>Preview page</translation>
    </message>
    <message>
        <source>复制页面</source>
        <translation>Duplicate page</translation>
    </message>
    <message>
        <source>向右旋转页面</source>
        <translation>Rotate page right</translation>
    </message>
    <message>
        <source>删除页面</source>
        <translation>Delete page</translation>
    </message>
</context>
<context>
    <name>PagePrinter</name>
    <message>
        <source>打印机无法创建新页面。</source>
        <translation>The printer cannot create a new page.</translation>
    </message>
    <message>
        <source>第 %1 页渲染失败。</source>
        <translation>Page %1 could not be rendered.</translation>
    </message>
</context>
<context>
    <name>PasswordInput</name>
    <message>
        <source>隐藏密码</source>
        <translation>Hide password</translation>
    </message>
    <message>
        <source>显示密码</source>
        <translation>Show password</translation>
    </message>
</context>
<context>
    <name>PasswordQuestion</name>
    <message>
        <source>密码错误，请重新输入 PDF 密码：</source>
        <translation>Incorrect password. Enter the PDF password again:</translation>
    </message>
    <message>
        <source>需要密码</source>
        <translation>Password Required</translation>
    </message>
    <message>
        <source>确定</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Cancel</translation>
    </message>
</context>
<context>
    <name>PdfBackendError</name>
    <message>
        <source>文件不存在或已被移动。</source>
        <translation>The file does not exist or has been moved.</translation>
    </message>
    <message>
        <source>PDF 需要密码。</source>
        <translation>The PDF requires a password.</translation>
    </message>
    <message>
        <source>PDF 密码错误。</source>
        <translation>The PDF password is incorrect.</translation>
    </message>
    <message>
        <source>PDF 已损坏或格式不受支持。</source>
        <translation>The PDF is damaged or its format is not supported.</translation>
    </message>
    <message>
        <source>页面渲染失败。</source>
        <translation>The page could not be rendered.</translation>
    </message>
    <message>
        <source>无法写入目标文件，请检查权限和磁盘空间。</source>
        <translation>The target file could not be written. Check the permissions and the disk space.</translation>
    </message>
    <message>
        <source>操作未完成。</source>
        <translation>The operation was not completed.</translation>
    </message>
</context>
<context>
    <name>PdfBottomControlBar</name>
    <message>
        <source>切换为适合高度</source>
        <translation>Switch to fit height</translation>
    </message>
    <message>
        <source>切换为适合宽度</source>
        <translation>Switch to fit width</translation>
    </message>
    <message>
        <source>上一页</source>
        <translation>Previous page</translation>
    </message>
    <message>
        <source>下一页</source>
        <translation>Next page</translation>
    </message>
</context>
<context>
    <name>PdfCompressOptionsPanel</name>
    <message>
        <source>压缩PDF</source>
        <translation>Compress PDF</translation>
    </message>
    <message>
        <source>压缩</source>
        <translation>Compress</translation>
    </message>
    <message>
        <source>基本</source>
        <translation>Basic</translation>
    </message>
    <message>
        <source>文件尺寸适中，质量最</source>
        <translation>Medium size, best quality</translation>
    </message>
    <message>
        <source>强</source>
        <translation>Strong</translation>
    </message>
    <message>
        <source>文件最小，质量</source>
        <translation>Smallest size, lower quality</translation>
    </message>
    <message>
        <source>选择压缩等级</source>
        <translation>Compression level</translation>
    </message>
    <message>
        <source>保存选项</source>
        <translation>Save options</translation>
    </message>
</context>
<context>
    <name>PdfCompressPage</name>
    <message>
        <source>从你的桌面上添加或拖放PDF文件，开始压缩。</source>
        <translation>Add PDF files or drop them here from your desktop to start compressing.</translation>
    </message>
</context>
<context>
    <name>PdfConvertOptionsPanel</name>
    <message>
        <source>PDF 转为图像</source>
        <translation>PDF to images</translation>
    </message>
    <message>
        <source>转换</source>
        <translation>Convert</translation>
    </message>
    <message>
        <source>选择图像格式</source>
        <translation>Image format</translation>
    </message>
    <message>
        <source>JPG</source>
        <translation>JPG</translation>
    </message>
    <message>
        <source>PNG</source>
        <translation>PNG</translation>
    </message>
    <message>
        <source>更多选项</source>
        <translation>More options</translation>
    </message>
    <message>
        <source>提取单个图像</source>
        <translation>Extract individual images</translation>
    </message>
    <message>
        <source>PDF 中的每张图像都将保存为单张图像</source>
        <translation>Each image in the PDF is saved as an image of its own</translation>
    </message>
</context>
<context>
    <name>PdfDecryOptionsPanel</name>
    <message>
        <source>解锁PDF</source>
        <translation>Unlock PDF</translation>
    </message>
    <message>
        <source>解锁</source>
        <translation>Unlock</translation>
    </message>
    <message>
        <source>密码</source>
        <translation>Password</translation>
    </message>
    <message>
        <source>保存选项</source>
        <translation>Save options</translation>
    </message>
    <message>
        <source>此项目为必填项</source>
        <translation>This field is required</translation>
    </message>
</context>
<context>
    <name>PdfDecryPage</name>
    <message>
        <source>从你的桌面上添加或拖放PDF文件，开始解密。</source>
        <translation>Add PDF files or drop them here from your desktop to start unlocking.</translation>
    </message>
</context>
<context>
    <name>PdfDocumentView</name>
    <message>
        <source>正在渲染第 %1 页…</source>
        <translation>Rendering page %1…</translation>
    </message>
    <message>
        <source>无法显示此页面</source>
        <translation>This page cannot be shown</translation>
    </message>
</context>
<context>
    <name>PdfEncryOptionsPanel</name>
    <message>
        <source>加密PDF</source>
        <translation>Encrypt PDF</translation>
    </message>
    <message>
        <source>添加密码</source>
        <translation>Add password</translation>
    </message>
    <message>
        <source>密码</source>
        <translation>Password</translation>
    </message>
    <message>
        <source>重新输入密码</source>
        <translation>Re-enter password</translation>
    </message>
    <message>
        <source>保存选项</source>
        <translation>Save options</translation>
    </message>
    <message>
        <source>此项目为必填项</source>
        <translation>This field is required</translation>
    </message>
    <message>
        <source>两个密码应该匹配</source>
        <translation>The passwords must match</translation>
    </message>
</context>
<context>
    <name>PdfEncryPage</name>
    <message>
        <source>加密PDF</source>
        <translation>Encrypt PDF</translation>
    </message>
    <message>
        <source>从你的桌面上添加或拖放PDF文件，开始加密。</source>
        <translation>Add PDF files or drop them here from your desktop to start encrypting.</translation>
    </message>
    <message>
        <source>两个密码应该匹配</source>
        <translation>The passwords must match</translation>
    </message>
    <message>
        <source>继续将使用第一个密码加密文件。</source>
        <translation>If you continue, the files are encrypted with the first password.</translation>
    </message>
    <message>
        <source>继续</source>
        <translation>Continue</translation>
    </message>
</context>
<context>
    <name>PdfFileCommands</name>
    <message>
        <source>此 PDF 已加密，请输入密码：</source>
        <translation>This PDF is encrypted. Enter the password:</translation>
    </message>
    <message>
        <source>无法打开 PDF</source>
        <translation>The PDF cannot be opened</translation>
    </message>
    <message>
        <source>保存修改</source>
        <translation>Save changes</translation>
    </message>
    <message>
        <source>当前 PDF 已修改，是否保存？</source>
        <translation>The current PDF has been modified. Save it?</translation>
    </message>
    <message>
        <source>保存</source>
        <translation>Save</translation>
    </message>
    <message>
        <source>不保存</source>
        <translation>Don’t Save</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>未命名.pdf</source>
        <translation>Untitled.pdf</translation>
    </message>
    <message>
        <source>将 PDF 保存为</source>
        <translation>Save the PDF As</translation>
    </message>
    <message>
        <source>PDF 文件 (*.pdf)</source>
        <translation>PDF files (*.pdf)</translation>
    </message>
    <message>
        <source>保存 PDF 失败</source>
        <translation>Saving the PDF failed</translation>
    </message>
</context>
<context>
    <name>PdfInsertDropZone</name>
    <message>
        <source>插入 PDF
或将多个 PDF 拖放至此处</source>
        <translation>Insert PDF
or drop several PDFs here</translation>
    </message>
</context>
<context>
    <name>PdfMergeOptionsPanel</name>
    <message>
        <source>合并PDF</source>
        <translation>Merge PDF</translation>
    </message>
    <message>
        <source>合并</source>
        <translation>Merge</translation>
    </message>
    <message>
        <source>插入</source>
        <translation>Insert</translation>
    </message>
    <message>
        <source>空白</source>
        <translation>Blank</translation>
    </message>
    <message>
        <source>在合并之前，你可以在文件之间插入空白页</source>
        <translation>Before merging, you can insert blank pages between files</translation>
    </message>
</context>
<context>
    <name>PdfMergePage</name>
    <message>
        <source>从你的桌面上添加或拖放PDF文件，开始合并。</source>
        <translation>Add PDF files or drop them here from your desktop to start merging.</translation>
    </message>
</context>
<context>
    <name>PdfOperationSidePanel</name>
    <message>
        <source>将选定页面提取为单个文件</source>
        <translation>Extract the selected pages as a single file</translation>
    </message>
    <message>
        <source>将每个页面拆分为单个文件</source>
        <translation>Split every page into a file of its own</translation>
    </message>
    <message>
        <source>提取</source>
        <translation>Extract</translation>
    </message>
    <message>
        <source>拆分</source>
        <translation>Split</translation>
    </message>
    <message>
        <source>文件提取选项</source>
        <translation>Extraction options</translation>
    </message>
    <message>
        <source>将选定页面另存为</source>
        <translation>Save the selected pages as</translation>
    </message>
    <message>
        <source>文件拆分选项</source>
        <translation>Split options</translation>
    </message>
    <message>
        <source>输出预览</source>
        <translation>Output preview</translation>
    </message>
    <message>
        <source>文件位置</source>
        <translation>File location</translation>
    </message>
    <message>
        <source>请先选择要提取的页面</source>
        <translation>Select the pages to extract first</translation>
    </message>
    <message>
        <source>%1-extracted.pdf
页面 %2</source>
        <translation>%1-extracted.pdf
Pages %2</translation>
    </message>
    <message>
        <source>%1-%2.pdf
第 %2 页</source>
        <translation>%1-%2.pdf
Page %2</translation>
    </message>
    <message>
        <source>点击页面之间的虚线，可以自定义拆分文件。</source>
        <translation>Click the dashed lines between the pages to choose where to split.</translation>
    </message>
    <message>
        <source>%1-%2.pdf
页面 %3-%4</source>
        <translation>%1-%2.pdf
Pages %3-%4</translation>
    </message>
</context>
<context>
    <name>PdfPageCommands</name>
    <message>
        <source>插入的 PDF 已加密，请输入密码：</source>
        <translation>The PDF to insert is encrypted. Enter its password:</translation>
    </message>
    <message>
        <source>插入 PDF 失败</source>
        <translation>Inserting the PDF failed</translation>
    </message>
    <message>
        <source>插入 PDF</source>
        <translation>Insert PDF</translation>
    </message>
    <message>
        <source>PDF 文件 (*.pdf)</source>
        <translation>PDF files (*.pdf)</translation>
    </message>
    <message>
        <source>在后面插入空白页</source>
        <translation>Insert a blank page after</translation>
    </message>
    <message>
        <source>提取失败</source>
        <translation>Extraction failed</translation>
    </message>
    <message>
        <source>部分页面提取失败</source>
        <translation>Some pages could not be extracted</translation>
    </message>
    <message>
        <source>提取完成</source>
        <translation>Extraction complete</translation>
    </message>
    <message>
        <source>拆分失败</source>
        <translation>Split failed</translation>
    </message>
    <message>
        <source>部分文件拆分失败</source>
        <translation>Some files could not be split off</translation>
    </message>
    <message>
        <source>拆分完成</source>
        <translation>Split complete</translation>
    </message>
    <message>
        <source>无法创建目标文件夹。</source>
        <translation>The target folder could not be created.</translation>
    </message>
    <message>
        <source>已生成 %1 个文件，%2 个文件失败。

%3</source>
        <translation>Files created: %1, failed: %2.

%3</translation>
    </message>
    <message>
        <source>已生成 %1 个 PDF 文件。
%2</source>
        <translation>PDF files created: %1.
%2</translation>
    </message>
</context>
<context>
    <name>PdfToOfficeOptionsPanel</name>
    <message>
        <source>PDF转为Office</source>
        <translation>PDF to Office</translation>
    </message>
    <message>
        <source>转换</source>
        <translation>Convert</translation>
    </message>
    <message>
        <source>选择文件格式</source>
        <translation>File format</translation>
    </message>
    <message>
        <source>Word (*.docx)</source>
        <translation>Word (*.docx)</translation>
    </message>
    <message>
        <source>Excel (*.xlsx)</source>
        <translation>Excel (*.xlsx)</translation>
    </message>
    <message>
        <source>PowerPoint (*.pptx)</source>
        <translation>PowerPoint (*.pptx)</translation>
    </message>
</context>
<context>
    <name>PdfToOfficePage</name>
    <message>
        <source>从你的桌面上添加或拖放PDF文件，开始转换。</source>
        <translation>Add PDF files or drop them here from your desktop to start converting.</translation>
    </message>
</context>
<context>
    <name>PdfTopToolBar</name>
    <message>
        <source>文档</source>
        <translation>Document</translation>
    </message>
    <message>
        <source>文档阅读视图</source>
        <translation>Document reading view</translation>
    </message>
    <message>
        <source>页面</source>
        <translation>Pages</translation>
    </message>
    <message>
        <source>页面管理视图</source>
        <translation>Page management view</translation>
    </message>
    <message>
        <source>显示或隐藏缩略图</source>
        <translation>Show or hide thumbnails</translation>
    </message>
    <message>
        <source>工具</source>
        <translation>Tools</translation>
    </message>
    <message>
        <source>PDF 工具</source>
        <translation>PDF tools</translation>
    </message>
    <message>
        <source>插入</source>
        <translation>Insert</translation>
    </message>
    <message>
        <source>插入 PDF 或空白页</source>
        <translation>Insert a PDF or a blank page</translation>
    </message>
    <message>
        <source>提取</source>
        <translation>Extract</translation>
    </message>
    <message>
        <source>提取选定页面</source>
        <translation>Extract selected pages</translation>
    </message>
    <message>
        <source>拆分</source>
        <translation>Split</translation>
    </message>
    <message>
        <source>拆分 PDF</source>
        <translation>Split the PDF</translation>
    </message>
    <message>
        <source>向左旋转</source>
        <translation>Rotate left</translation>
    </message>
    <message>
        <source>向右旋转</source>
        <translation>Rotate right</translation>
    </message>
    <message>
        <source>删除选定页面</source>
        <translation>Delete selected pages</translation>
    </message>
    <message>
        <source>全选</source>
        <translation>Select all</translation>
    </message>
    <message>
        <source>选择全部页面</source>
        <translation>Select all pages</translation>
    </message>
    <message>
        <source>撤销</source>
        <translation>Undo</translation>
    </message>
    <message>
        <source>重做</source>
        <translation>Redo</translation>
    </message>
    <message>
        <source>更多</source>
        <translation>More</translation>
    </message>
    <message>
        <source>手形工具</source>
        <translation>Hand tool</translation>
    </message>
    <message>
        <source>压缩</source>
        <translation>Compress</translation>
    </message>
    <message>
        <source>PDF 转为 Office</source>
        <translation>PDF to Office</translation>
    </message>
    <message>
        <source>PDF 转为图像</source>
        <translation>PDF to images</translation>
    </message>
    <message>
        <source>加密 PDF</source>
        <translation>Encrypt PDF</translation>
    </message>
    <message>
        <source>解锁 PDF</source>
        <translation>Unlock PDF</translation>
    </message>
    <message>
        <source>页面编号</source>
        <translation>Page numbers</translation>
    </message>
    <message>
        <source>保存文件</source>
        <translation>Save file</translation>
    </message>
    <message>
        <source>将文件保存为…</source>
        <translation>Save file as…</translation>
    </message>
    <message>
        <source>打印</source>
        <translation>Print</translation>
    </message>
    <message>
        <source>在文件夹中显示</source>
        <translation>Show in folder</translation>
    </message>
</context>
<context>
    <name>PdfUndoManager</name>
    <message>
        <source>插入 PDF</source>
        <translation>Insert PDF</translation>
    </message>
    <message>
        <source>插入空白页</source>
        <translation>Insert Blank Page</translation>
    </message>
    <message>
        <source>复制页面</source>
        <translation>Duplicate Pages</translation>
    </message>
    <message>
        <source>删除页面</source>
        <translation>Delete Pages</translation>
    </message>
    <message>
        <source>向左旋转页面</source>
        <translation>Rotate Pages Left</translation>
    </message>
    <message>
        <source>向右旋转页面</source>
        <translation>Rotate Pages Right</translation>
    </message>
    <message>
        <source>移动页面</source>
        <translation>Move Page</translation>
    </message>
</context>
<context>
    <name>SaveOption</name>
    <message>
        <source>替换原始文件</source>
        <translation>Replace original file</translation>
    </message>
    <message>
        <source>保留原始文件</source>
        <translation>Keep original file</translation>
    </message>
</context>
<context>
    <name>SaveProgress</name>
    <message>
        <source>正在保存 PDF</source>
        <translation>Saving the PDF</translation>
    </message>
    <message>
        <source>正在写入文件，大文件可能需要一些时间。</source>
        <translation>Writing the file. Large files may take a while.</translation>
    </message>
    <message>
        <source>保存完成前请不要关闭程序。</source>
        <translation>Do not close the program until saving has finished.</translation>
    </message>
</context>
<context>
    <name>TaskCenter</name>
    <message>
        <source>找不到文件或无法打开文件。</source>
        <translation>The file was not found or cannot be opened.</translation>
    </message>
    <message>
        <source>需要密码。</source>
        <translation>A password is required.</translation>
    </message>
    <message>
        <source>密码不正确。</source>
        <translation>The password is incorrect.</translation>
    </message>
    <message>
        <source>文件已损坏或不受支持。</source>
        <translation>The file is damaged or not supported.</translation>
    </message>
    <message>
        <source>无法渲染页面。</source>
        <translation>A page could not be rendered.</translation>
    </message>
    <message>
        <source>无法写入结果。</source>
        <translation>The result could not be written.</translation>
    </message>
    <message>
        <source>图像已损坏或不受支持。</source>
        <translation>The image is damaged or not supported.</translation>
    </message>
</context>
<context>
    <name>TaskListItem</name>
    <message>
        <source>打开文件</source>
        <translation>Open file</translation>
    </message>
    <message>
        <source>打开所在文件夹</source>
        <translation>Open containing folder</translation>
    </message>
    <message>
        <source>处理中...</source>
        <translation>Processing…</translation>
    </message>
    <message>
        <source>已暂停</source>
        <translation>Paused</translation>
    </message>
    <message>
        <source>完成</source>
        <translation>Done</translation>
    </message>
    <message>
        <source>失败</source>
        <translation>Failed</translation>
    </message>
    <message>
        <source>已取消</source>
        <translation>Canceled</translation>
    </message>
</context>
<context>
    <name>TaskListWidget</name>
    <message>
        <source>重来</source>
        <translation>Start over</translation>
    </message>
</context>
<context>
    <name>ThumbnailDelegate</name>
    <message>
        <source>正在生成缩略图…</source>
        <translation>Generating thumbnail…</translation>
    </message>
    <message>
        <source>预览页面</source>
        <translation>Preview page</translation>
    </message>
    <message>
        <source>向右旋转页面</source>
        <translation>Rotate page right</translation>
    </message>
    <message>
        <source>删除页面</source>
        <translation>Delete page</translation>
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
        <translation>Language Settings</translation>
    </message>
    <message>
        <source>最小化</source>
        <translation>Minimize</translation>
    </message>
    <message>
        <source>关闭</source>
        <translation>Close</translation>
    </message>
    <message>
        <source>还原</source>
        <translation>Restore</translation>
    </message>
    <message>
        <source>最大化</source>
        <translation>Maximize</translation>
    </message>
</context>
<context>
    <name>ToolOptionsPanel</name>
    <message>
        <source>文件位置</source>
        <translation>Save location</translation>
    </message>
</context>
</TS>
