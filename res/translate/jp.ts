<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja_JP" sourcelanguage="zh_CN">
<context>
    <name>CustomTabBar</name>
    <message>
        <source>关闭</source>
        <translation>閉じる</translation>
    </message>
</context>
<context>
    <name>DocumentPrinting</name>
    <message>
        <source>打印 PDF</source>
        <translation>PDF の印刷</translation>
    </message>
    <message>
        <source>打印失败</source>
        <translation>印刷に失敗しました</translation>
    </message>
    <message>
        <source>无法启动打印任务。</source>
        <translation>印刷ジョブを開始できませんでした。</translation>
    </message>
    <message>
        <source>打印未完成</source>
        <translation>印刷は完了しませんでした</translation>
    </message>
</context>
<context>
    <name>FileDropZoneWidget</name>
    <message>
        <source>PDF 文件 (*.pdf)</source>
        <translation>PDF ファイル (*.pdf)</translation>
    </message>
    <message>
        <source>选择 PDF</source>
        <translation>PDF を選択</translation>
    </message>
    <message>
        <source>从你的桌面上添加或拖放PDF文件，开始转换。</source>
        <translation>PDF ファイルを追加するか、デスクトップからここにドロップして変換を始めます。</translation>
    </message>
    <message>
        <source>添加文件</source>
        <translation>ファイルを追加</translation>
    </message>
</context>
<context>
    <name>FileListItem</name>
    <message>
        <source>拖动排序</source>
        <translation>ドラッグして並べ替え</translation>
    </message>
</context>
<context>
    <name>FileListWidget</name>
    <message>
        <source>PDF 文件 (*.pdf)</source>
        <translation>PDF ファイル (*.pdf)</translation>
    </message>
    <message>
        <source>选择 PDF</source>
        <translation>PDF を選択</translation>
    </message>
    <message>
        <source>添加文件</source>
        <translation>ファイルを追加</translation>
    </message>
    <message>
        <source>清除全部</source>
        <translation>すべてクリア</translation>
    </message>
</context>
<context>
    <name>FileLocationSelector</name>
    <message>
        <source>文件保存位置</source>
        <translation>ファイルの保存場所</translation>
    </message>
    <message>
        <source>原始文件夹</source>
        <translation>元のフォルダー</translation>
    </message>
    <message>
        <source>桌面</source>
        <translation>デスクトップ</translation>
    </message>
    <message>
        <source>文档</source>
        <translation>ドキュメント</translation>
    </message>
    <message>
        <source>选择其他文件夹…</source>
        <translation>別のフォルダーを選択…</translation>
    </message>
    <message>
        <source>选择文件保存位置</source>
        <translation>ファイルの保存場所を選択</translation>
    </message>
    <message>
        <source>自定义文件夹</source>
        <translation>カスタムフォルダー</translation>
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
        <translation>ツール</translation>
    </message>
    <message>
        <source>最近文件</source>
        <translation>最近使用したファイル</translation>
    </message>
    <message>
        <source>打开一个 PDF 文件，或选择下方的工具开始。</source>
        <translation>PDF ファイルを開くか、下のツールを選んでください。</translation>
    </message>
    <message>
        <source>打开 PDF 文件</source>
        <translation>PDF ファイルを開く</translation>
    </message>
    <message>
        <source>暂无最近文件</source>
        <translation>最近使用したファイルはありません</translation>
    </message>
    <message>
        <source>打开的 PDF 文件会显示在这里</source>
        <translation>開いた PDF ファイルがここに表示されます</translation>
    </message>
    <message>
        <source>PDF 文件 (*.pdf)</source>
        <translation>PDF ファイル (*.pdf)</translation>
    </message>
</context>
<context>
    <name>ImageToPdfOptionsPanel</name>
    <message>
        <source>图像转PDF</source>
        <translation>画像から PDF</translation>
    </message>
    <message>
        <source>转换</source>
        <translation>変換</translation>
    </message>
    <message>
        <source>纵向</source>
        <translation>縦</translation>
    </message>
    <message>
        <source>横向</source>
        <translation>横</translation>
    </message>
    <message>
        <source>页面大小</source>
        <translation>用紙サイズ</translation>
    </message>
    <message>
        <source>A4</source>
        <translation>A4</translation>
    </message>
    <message>
        <source>Letter(US)</source>
        <translation>レター (US)</translation>
    </message>
    <message>
        <source>页边距选项</source>
        <translation>余白</translation>
    </message>
    <message>
        <source>无</source>
        <translation>なし</translation>
    </message>
    <message>
        <source>窄</source>
        <translation>狭い</translation>
    </message>
    <message>
        <source>宽</source>
        <translation>広い</translation>
    </message>
    <message>
        <source>页面方向</source>
        <translation>ページの向き</translation>
    </message>
    <message>
        <source>更多选项</source>
        <translation>その他のオプション</translation>
    </message>
    <message>
        <source>转换为单个PDF</source>
        <translation>1 つの PDF にまとめる</translation>
    </message>
    <message>
        <source>每张图像都将保存为单个PDF</source>
        <translation>オフの場合、画像ごとに PDF を作成します</translation>
    </message>
</context>
<context>
    <name>ImageToPdfPage</name>
    <message>
        <source>添加或拖拽图像文件进行转换。</source>
        <translation>画像を追加するか、ここにドロップして変換します。</translation>
    </message>
    <message>
        <source>图像文件 (*.jpg *.jpeg *.png)</source>
        <translation>画像ファイル (*.jpg *.jpeg *.png)</translation>
    </message>
    <message>
        <source>选择图片</source>
        <translation>画像を選択</translation>
    </message>
</context>
<context>
    <name>LanguageDialog</name>
    <message>
        <source>简体中文</source>
        <translation>中国語 (簡体字)</translation>
    </message>
    <message>
        <source>英语</source>
        <translation>英語</translation>
    </message>
    <message>
        <source>德语</source>
        <translation>ドイツ語</translation>
    </message>
    <message>
        <source>法语</source>
        <translation>フランス語</translation>
    </message>
    <message>
        <source>西班牙语</source>
        <translation>スペイン語</translation>
    </message>
    <message>
        <source>阿拉伯语</source>
        <translation>アラビア語</translation>
    </message>
    <message>
        <source>日语</source>
        <translation>日本語</translation>
    </message>
    <message>
        <source>应用</source>
        <translation>適用</translation>
    </message>
    <message>
        <source>语言设置</source>
        <translation>言語設定</translation>
    </message>
    <message>
        <source>选择 Quillora 的界面语言</source>
        <translation>Quillora の表示言語を選択</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>切换语言？</source>
        <translation>言語を切り替えますか？</translation>
    </message>
    <message>
        <source>界面语言将切换为“%1”。</source>
        <translation>表示言語を「%1」に切り替えます。</translation>
    </message>
    <message>
        <source>当前打开的工具标签页将关闭。</source>
        <translation>現在開いているツールのタブは閉じられます。</translation>
    </message>
    <message>
        <source>切换</source>
        <translation>切り替える</translation>
    </message>
    <message>
        <source>无法切换语言</source>
        <translation>言語を切り替えられません</translation>
    </message>
    <message>
        <source>未能加载所选语言的翻译文件。</source>
        <translation>選択した言語の翻訳ファイルを読み込めませんでした。</translation>
    </message>
</context>
<context>
    <name>MainPage</name>
    <message>
        <source>首页</source>
        <translation>ホーム</translation>
    </message>
    <message>
        <source>压缩PDF</source>
        <translation>PDF を圧縮</translation>
    </message>
    <message>
        <source>PDF转为Office</source>
        <translation>PDF を Office に変換</translation>
    </message>
    <message>
        <source>Office转为PDF</source>
        <translation>Office を PDF に変換</translation>
    </message>
    <message>
        <source>图像转PDF</source>
        <translation>画像を PDF に変換</translation>
    </message>
    <message>
        <source>PDF转为图像</source>
        <translation>PDF を画像に変換</translation>
    </message>
    <message>
        <source>PDF解密</source>
        <translation>PDF の暗号化を解除</translation>
    </message>
    <message>
        <source>PDF加密</source>
        <translation>PDF を暗号化</translation>
    </message>
    <message>
        <source>合并PDF</source>
        <translation>PDF を結合</translation>
    </message>
    <message>
        <source>任务仍在进行</source>
        <translation>処理中のタスクがあります</translation>
    </message>
    <message>
        <source>关闭程序将停止尚未完成的任务。</source>
        <translation>プログラムを閉じると、完了していないタスクは中止されます。</translation>
    </message>
    <message>
        <source>停止并关闭</source>
        <translation>中止して閉じる</translation>
    </message>
</context>
<context>
    <name>ModernComboBox</name>
    <message>
        <source>选择位置...</source>
        <translation>場所を選択…</translation>
    </message>
    <message>
        <source>选择文件夹</source>
        <translation>フォルダーを選択</translation>
    </message>
</context>
<context>
    <name>ModernMessageBox</name>
    <message>
        <source>取消</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>不保存</source>
        <translation>保存しない</translation>
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
        <translation>Office から PDF</translation>
    </message>
    <message>
        <source>转换</source>
        <translation>変換</translation>
    </message>
    <message>
        <source>将 Word、PowerPoint 和 Excel 文件转换为 PDF</source>
        <translation>Word、PowerPoint、Excel のファイルを PDF に変換します</translation>
    </message>
</context>
<context>
    <name>OfficeToPdfPage</name>
    <message>
        <source>添加或拖拽文件进行转换。</source>
        <translation>ファイルを追加するか、ここにドロップして変換します。</translation>
    </message>
</context>
<context>
    <name>OfficeToolPage</name>
    <message>
        <source>暂不支持</source>
        <translation>未対応</translation>
    </message>
    <message>
        <source>此版本尚不能转换 Office 文件。</source>
        <translation>このバージョンでは Office ファイルを変換できません。</translation>
    </message>
</context>
<context>
    <name>OutputLocation</name>
    <message>
        <source>原始文件</source>
        <translation>元のフォルダー</translation>
    </message>
    <message>
        <source>桌面</source>
        <translation>デスクトップ</translation>
    </message>
    <message>
        <source>Quillora文件</source>
        <translation>Quillora フォルダー</translation>
    </message>
    <message>
        <source>选择位置...</source>
        <translation>場所を選択…</translation>
    </message>
</context>
<context>
    <name>PageCardDelegate</name>
    <message>
        <source>无法显示此页面</source>
        <translation>このページは表示できません</translation>
    </message>
</context>
<context>
    <name>PageGridZoomControl</name>
    <message>
        <source>缩小</source>
        <translation>縮小</translation>
    </message>
    <message>
        <source>放大</source>
        <translation>拡大</translation>
    </message>
</context>
<context>
    <name>PageManagerDelegate</name>
    <message>
        <source>正在生成预览…</source>
        <translation>プレビューを生成中…</translation>
    </message>
    <message>
        <source>在此处插入页面</source>
        <translation>ここにページを挿入</translation>
    </message>
    <message>
        <source>取消此处的拆分</source>
        <translation>ここでの分割を取り消す</translation>
    </message>
    <message>
        <source>在此处拆分</source>
        <translation>ここで分割</translation>
    </message>
    <message>
        <source>取消选择页面</source>
        <translation>ページの選択を解除</translation>
    </message>
    <message>
        <source>选择页面</source>
        <translation>ページを選択</translation>
    </message>
    <message>
        <source>预览页面</source>
        <translation>ページをプレビュー</translation>
    </message>
    <message>
        <source>复制页面</source>
        <translation>ページを複製</translation>
    </message>
    <message>
        <source>向右旋转页面</source>
        <translation>ページを右に回転</translation>
    </message>
    <message>
        <source>删除页面</source>
        <translation>ページを削除</translation>
    </message>
</context>
<context>
    <name>PagePrinter</name>
    <message>
        <source>打印机无法创建新页面。</source>
        <translation>プリンターで新しいページを作成できません。</translation>
    </message>
    <message>
        <source>第 %1 页渲染失败。</source>
        <translation>%1 ページを描画できませんでした。</translation>
    </message>
</context>
<context>
    <name>PasswordInput</name>
    <message>
        <source>隐藏密码</source>
        <translation>パスワードを隠す</translation>
    </message>
    <message>
        <source>显示密码</source>
        <translation>パスワードを表示</translation>
    </message>
</context>
<context>
    <name>PasswordQuestion</name>
    <message>
        <source>密码错误，请重新输入 PDF 密码：</source>
        <translation>パスワードが正しくありません。PDF のパスワードをもう一度入力してください:</translation>
    </message>
    <message>
        <source>需要密码</source>
        <translation>パスワードが必要です</translation>
    </message>
    <message>
        <source>确定</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>キャンセル</translation>
    </message>
</context>
<context>
    <name>PdfBackendError</name>
    <message>
        <source>文件不存在或已被移动。</source>
        <translation>ファイルが存在しないか、移動されています。</translation>
    </message>
    <message>
        <source>PDF 需要密码。</source>
        <translation>PDF にはパスワードが必要です。</translation>
    </message>
    <message>
        <source>PDF 密码错误。</source>
        <translation>PDF のパスワードが正しくありません。</translation>
    </message>
    <message>
        <source>PDF 已损坏或格式不受支持。</source>
        <translation>PDF が破損しているか、形式がサポートされていません。</translation>
    </message>
    <message>
        <source>页面渲染失败。</source>
        <translation>ページを描画できませんでした。</translation>
    </message>
    <message>
        <source>无法写入目标文件，请检查权限和磁盘空间。</source>
        <translation>保存先のファイルに書き込めません。アクセス権とディスクの空き容量を確認してください。</translation>
    </message>
    <message>
        <source>操作未完成。</source>
        <translation>操作は完了しませんでした。</translation>
    </message>
</context>
<context>
    <name>PdfBottomControlBar</name>
    <message>
        <source>切换为适合高度</source>
        <translation>高さに合わせる</translation>
    </message>
    <message>
        <source>切换为适合宽度</source>
        <translation>幅に合わせる</translation>
    </message>
    <message>
        <source>上一页</source>
        <translation>前のページ</translation>
    </message>
    <message>
        <source>下一页</source>
        <translation>次のページ</translation>
    </message>
</context>
<context>
    <name>PdfCompressOptionsPanel</name>
    <message>
        <source>压缩PDF</source>
        <translation>PDF を圧縮</translation>
    </message>
    <message>
        <source>压缩</source>
        <translation>圧縮</translation>
    </message>
    <message>
        <source>基本</source>
        <translation>標準</translation>
    </message>
    <message>
        <source>文件尺寸适中，质量最</source>
        <translation>中サイズ、最高品質</translation>
    </message>
    <message>
        <source>强</source>
        <translation>高圧縮</translation>
    </message>
    <message>
        <source>文件最小，质量</source>
        <translation>最小サイズ、低品質</translation>
    </message>
    <message>
        <source>选择压缩等级</source>
        <translation>圧縮レベル</translation>
    </message>
    <message>
        <source>保存选项</source>
        <translation>保存オプション</translation>
    </message>
</context>
<context>
    <name>PdfCompressPage</name>
    <message>
        <source>从你的桌面上添加或拖放PDF文件，开始压缩。</source>
        <translation>PDF ファイルを追加するか、デスクトップからここにドロップして圧縮を始めます。</translation>
    </message>
</context>
<context>
    <name>PdfConvertOptionsPanel</name>
    <message>
        <source>PDF 转为图像</source>
        <translation>PDF から画像</translation>
    </message>
    <message>
        <source>转换</source>
        <translation>変換</translation>
    </message>
    <message>
        <source>选择图像格式</source>
        <translation>画像形式</translation>
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
        <translation>その他のオプション</translation>
    </message>
    <message>
        <source>提取单个图像</source>
        <translation>画像を個別に抽出</translation>
    </message>
    <message>
        <source>PDF 中的每张图像都将保存为单张图像</source>
        <translation>PDF 内の画像をそれぞれ 1 つの画像として保存します</translation>
    </message>
</context>
<context>
    <name>PdfDecryOptionsPanel</name>
    <message>
        <source>解锁PDF</source>
        <translation>PDF のロックを解除</translation>
    </message>
    <message>
        <source>解锁</source>
        <translation>ロックを解除</translation>
    </message>
    <message>
        <source>密码</source>
        <translation>パスワード</translation>
    </message>
    <message>
        <source>保存选项</source>
        <translation>保存オプション</translation>
    </message>
    <message>
        <source>此项目为必填项</source>
        <translation>必須項目です</translation>
    </message>
</context>
<context>
    <name>PdfDecryPage</name>
    <message>
        <source>从你的桌面上添加或拖放PDF文件，开始解密。</source>
        <translation>PDF ファイルを追加するか、デスクトップからここにドロップしてロックの解除を始めます。</translation>
    </message>
</context>
<context>
    <name>PdfDocumentView</name>
    <message>
        <source>正在渲染第 %1 页…</source>
        <translation>%1 ページ目を描画しています…</translation>
    </message>
    <message>
        <source>无法显示此页面</source>
        <translation>このページは表示できません</translation>
    </message>
</context>
<context>
    <name>PdfEncryOptionsPanel</name>
    <message>
        <source>加密PDF</source>
        <translation>PDF を暗号化</translation>
    </message>
    <message>
        <source>添加密码</source>
        <translation>パスワードを追加</translation>
    </message>
    <message>
        <source>密码</source>
        <translation>パスワード</translation>
    </message>
    <message>
        <source>重新输入密码</source>
        <translation>パスワードの再入力</translation>
    </message>
    <message>
        <source>保存选项</source>
        <translation>保存オプション</translation>
    </message>
    <message>
        <source>此项目为必填项</source>
        <translation>必須項目です</translation>
    </message>
    <message>
        <source>两个密码应该匹配</source>
        <translation>パスワードが一致していません</translation>
    </message>
</context>
<context>
    <name>PdfEncryPage</name>
    <message>
        <source>加密PDF</source>
        <translation>PDF を暗号化</translation>
    </message>
    <message>
        <source>从你的桌面上添加或拖放PDF文件，开始加密。</source>
        <translation>PDF ファイルを追加するか、デスクトップからここにドロップして暗号化を始めます。</translation>
    </message>
    <message>
        <source>两个密码应该匹配</source>
        <translation>パスワードが一致していません</translation>
    </message>
    <message>
        <source>继续将使用第一个密码加密文件。</source>
        <translation>続行すると、最初のパスワードでファイルを暗号化します。</translation>
    </message>
    <message>
        <source>继续</source>
        <translation>続行</translation>
    </message>
</context>
<context>
    <name>PdfFileCommands</name>
    <message>
        <source>此 PDF 已加密，请输入密码：</source>
        <translation>この PDF は暗号化されています。パスワードを入力してください:</translation>
    </message>
    <message>
        <source>无法打开 PDF</source>
        <translation>PDF を開けません</translation>
    </message>
    <message>
        <source>保存修改</source>
        <translation>変更の保存</translation>
    </message>
    <message>
        <source>当前 PDF 已修改，是否保存？</source>
        <translation>現在の PDF は変更されています。保存しますか?</translation>
    </message>
    <message>
        <source>保存</source>
        <translation>保存</translation>
    </message>
    <message>
        <source>不保存</source>
        <translation>保存しない</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>未命名.pdf</source>
        <translation>無題.pdf</translation>
    </message>
    <message>
        <source>将 PDF 保存为</source>
        <translation>PDF に名前を付けて保存</translation>
    </message>
    <message>
        <source>PDF 文件 (*.pdf)</source>
        <translation>PDF ファイル (*.pdf)</translation>
    </message>
    <message>
        <source>保存 PDF 失败</source>
        <translation>PDF を保存できませんでした</translation>
    </message>
</context>
<context>
    <name>PdfInsertDropZone</name>
    <message>
        <source>插入 PDF
或将多个 PDF 拖放至此处</source>
        <translation>PDF を挿入
または複数の PDF をここにドロップ</translation>
    </message>
</context>
<context>
    <name>PdfMergeOptionsPanel</name>
    <message>
        <source>合并PDF</source>
        <translation>PDF を結合</translation>
    </message>
    <message>
        <source>合并</source>
        <translation>結合</translation>
    </message>
    <message>
        <source>插入</source>
        <translation>挿入</translation>
    </message>
    <message>
        <source>空白</source>
        <translation>空白</translation>
    </message>
    <message>
        <source>在合并之前，你可以在文件之间插入空白页</source>
        <translation>結合する前に、ファイルの間に空白ページを挿入できます</translation>
    </message>
</context>
<context>
    <name>PdfMergePage</name>
    <message>
        <source>从你的桌面上添加或拖放PDF文件，开始合并。</source>
        <translation>PDF ファイルを追加するか、デスクトップからここにドロップして結合を始めます。</translation>
    </message>
</context>
<context>
    <name>PdfOperationSidePanel</name>
    <message>
        <source>将选定页面提取为单个文件</source>
        <translation>選択したページを 1 つのファイルに抽出</translation>
    </message>
    <message>
        <source>将每个页面拆分为单个文件</source>
        <translation>各ページを個別のファイルに分割</translation>
    </message>
    <message>
        <source>提取</source>
        <translation>抽出</translation>
    </message>
    <message>
        <source>拆分</source>
        <translation>分割</translation>
    </message>
    <message>
        <source>文件提取选项</source>
        <translation>抽出オプション</translation>
    </message>
    <message>
        <source>将选定页面另存为</source>
        <translation>選択したページの保存名</translation>
    </message>
    <message>
        <source>文件拆分选项</source>
        <translation>分割オプション</translation>
    </message>
    <message>
        <source>输出预览</source>
        <translation>出力プレビュー</translation>
    </message>
    <message>
        <source>文件位置</source>
        <translation>ファイルの場所</translation>
    </message>
    <message>
        <source>请先选择要提取的页面</source>
        <translation>抽出するページを先に選択してください</translation>
    </message>
    <message>
        <source>%1-extracted.pdf
页面 %2</source>
        <translation>%1-extracted.pdf
ページ %2</translation>
    </message>
    <message>
        <source>%1-%2.pdf
第 %2 页</source>
        <translation>%1-%2.pdf
%2 ページ</translation>
    </message>
    <message>
        <source>点击页面之间的虚线，可以自定义拆分文件。</source>
        <translation>ページの間の破線をクリックすると、分割する位置を指定できます。</translation>
    </message>
    <message>
        <source>%1-%2.pdf
页面 %3-%4</source>
        <translation>%1-%2.pdf
ページ %3-%4</translation>
    </message>
</context>
<context>
    <name>PdfPageCommands</name>
    <message>
        <source>插入的 PDF 已加密，请输入密码：</source>
        <translation>挿入する PDF は暗号化されています。パスワードを入力してください:</translation>
    </message>
    <message>
        <source>插入 PDF 失败</source>
        <translation>PDF を挿入できませんでした</translation>
    </message>
    <message>
        <source>插入 PDF</source>
        <translation>PDF の挿入</translation>
    </message>
    <message>
        <source>PDF 文件 (*.pdf)</source>
        <translation>PDF ファイル (*.pdf)</translation>
    </message>
    <message>
        <source>在后面插入空白页</source>
        <translation>後ろに空白ページを挿入</translation>
    </message>
    <message>
        <source>提取失败</source>
        <translation>抽出に失敗しました</translation>
    </message>
    <message>
        <source>部分页面提取失败</source>
        <translation>一部のページを抽出できませんでした</translation>
    </message>
    <message>
        <source>提取完成</source>
        <translation>抽出が完了しました</translation>
    </message>
    <message>
        <source>拆分失败</source>
        <translation>分割に失敗しました</translation>
    </message>
    <message>
        <source>部分文件拆分失败</source>
        <translation>一部のファイルを分割できませんでした</translation>
    </message>
    <message>
        <source>拆分完成</source>
        <translation>分割が完了しました</translation>
    </message>
    <message>
        <source>无法创建目标文件夹。</source>
        <translation>保存先のフォルダーを作成できませんでした。</translation>
    </message>
    <message>
        <source>已生成 %1 个文件，%2 个文件失败。

%3</source>
        <translation>%1 個のファイルを作成しました。%2 個のファイルは失敗しました。

%3</translation>
    </message>
    <message>
        <source>已生成 %1 个 PDF 文件。
%2</source>
        <translation>%1 個の PDF ファイルを作成しました。
%2</translation>
    </message>
</context>
<context>
    <name>PdfToOfficeOptionsPanel</name>
    <message>
        <source>PDF转为Office</source>
        <translation>PDF から Office</translation>
    </message>
    <message>
        <source>转换</source>
        <translation>変換</translation>
    </message>
    <message>
        <source>选择文件格式</source>
        <translation>ファイル形式</translation>
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
        <translation>PDF ファイルを追加するか、デスクトップからここにドロップして変換を始めます。</translation>
    </message>
</context>
<context>
    <name>PdfTopToolBar</name>
    <message>
        <source>文档</source>
        <translation>文書</translation>
    </message>
    <message>
        <source>文档阅读视图</source>
        <translation>文書の閲覧表示</translation>
    </message>
    <message>
        <source>页面</source>
        <translation>ページ</translation>
    </message>
    <message>
        <source>页面管理视图</source>
        <translation>ページ管理表示</translation>
    </message>
    <message>
        <source>显示或隐藏缩略图</source>
        <translation>サムネイルの表示/非表示</translation>
    </message>
    <message>
        <source>工具</source>
        <translation>ツール</translation>
    </message>
    <message>
        <source>PDF 工具</source>
        <translation>PDF ツール</translation>
    </message>
    <message>
        <source>插入</source>
        <translation>挿入</translation>
    </message>
    <message>
        <source>插入 PDF 或空白页</source>
        <translation>PDF または空白ページを挿入</translation>
    </message>
    <message>
        <source>提取</source>
        <translation>抽出</translation>
    </message>
    <message>
        <source>提取选定页面</source>
        <translation>選択したページを抽出</translation>
    </message>
    <message>
        <source>拆分</source>
        <translation>分割</translation>
    </message>
    <message>
        <source>拆分 PDF</source>
        <translation>PDF を分割</translation>
    </message>
    <message>
        <source>向左旋转</source>
        <translation>左に回転</translation>
    </message>
    <message>
        <source>向右旋转</source>
        <translation>右に回転</translation>
    </message>
    <message>
        <source>删除选定页面</source>
        <translation>選択したページを削除</translation>
    </message>
    <message>
        <source>全选</source>
        <translation>すべて選択</translation>
    </message>
    <message>
        <source>选择全部页面</source>
        <translation>すべてのページを選択</translation>
    </message>
    <message>
        <source>撤销</source>
        <translation>元に戻す</translation>
    </message>
    <message>
        <source>重做</source>
        <translation>やり直す</translation>
    </message>
    <message>
        <source>更多</source>
        <translation>その他</translation>
    </message>
    <message>
        <source>手形工具</source>
        <translation>手のひらツール</translation>
    </message>
    <message>
        <source>压缩</source>
        <translation>圧縮</translation>
    </message>
    <message>
        <source>PDF 转为 Office</source>
        <translation>PDF を Office に変換</translation>
    </message>
    <message>
        <source>PDF 转为图像</source>
        <translation>PDF を画像に変換</translation>
    </message>
    <message>
        <source>加密 PDF</source>
        <translation>PDF の暗号化</translation>
    </message>
    <message>
        <source>解锁 PDF</source>
        <translation>PDF のロック解除</translation>
    </message>
    <message>
        <source>页面编号</source>
        <translation>ページ番号</translation>
    </message>
    <message>
        <source>保存文件</source>
        <translation>ファイルを保存</translation>
    </message>
    <message>
        <source>将文件保存为…</source>
        <translation>名前を付けて保存…</translation>
    </message>
    <message>
        <source>打印</source>
        <translation>印刷</translation>
    </message>
    <message>
        <source>在文件夹中显示</source>
        <translation>フォルダーに表示</translation>
    </message>
</context>
<context>
    <name>PdfUndoManager</name>
    <message>
        <source>插入 PDF</source>
        <translation>PDF の挿入</translation>
    </message>
    <message>
        <source>插入空白页</source>
        <translation>空白ページの挿入</translation>
    </message>
    <message>
        <source>复制页面</source>
        <translation>ページの複製</translation>
    </message>
    <message>
        <source>删除页面</source>
        <translation>ページの削除</translation>
    </message>
    <message>
        <source>向左旋转页面</source>
        <translation>ページを左に回転</translation>
    </message>
    <message>
        <source>向右旋转页面</source>
        <translation>ページを右に回転</translation>
    </message>
    <message>
        <source>移动页面</source>
        <translation>ページの移動</translation>
    </message>
</context>
<context>
    <name>SaveOption</name>
    <message>
        <source>替换原始文件</source>
        <translation>元のファイルを置き換える</translation>
    </message>
    <message>
        <source>保留原始文件</source>
        <translation>元のファイルを残す</translation>
    </message>
</context>
<context>
    <name>SaveProgress</name>
    <message>
        <source>正在保存 PDF</source>
        <translation>PDF を保存しています</translation>
    </message>
    <message>
        <source>正在写入文件，大文件可能需要一些时间。</source>
        <translation>ファイルを書き込んでいます。大きなファイルでは時間がかかることがあります。</translation>
    </message>
    <message>
        <source>保存完成前请不要关闭程序。</source>
        <translation>保存が完了するまでプログラムを終了しないでください。</translation>
    </message>
</context>
<context>
    <name>TaskCenter</name>
    <message>
        <source>找不到文件或无法打开文件。</source>
        <translation>ファイルが見つからないか、開けません。</translation>
    </message>
    <message>
        <source>需要密码。</source>
        <translation>パスワードが必要です。</translation>
    </message>
    <message>
        <source>密码不正确。</source>
        <translation>パスワードが正しくありません。</translation>
    </message>
    <message>
        <source>文件已损坏或不受支持。</source>
        <translation>ファイルが破損しているか、サポートされていません。</translation>
    </message>
    <message>
        <source>无法渲染页面。</source>
        <translation>ページを描画できませんでした。</translation>
    </message>
    <message>
        <source>无法写入结果。</source>
        <translation>結果を書き込めませんでした。</translation>
    </message>
    <message>
        <source>图像已损坏或不受支持。</source>
        <translation>画像が破損しているか、サポートされていません。</translation>
    </message>
</context>
<context>
    <name>TaskListItem</name>
    <message>
        <source>打开文件</source>
        <translation>ファイルを開く</translation>
    </message>
    <message>
        <source>打开所在文件夹</source>
        <translation>フォルダーを開く</translation>
    </message>
    <message>
        <source>处理中...</source>
        <translation>処理中…</translation>
    </message>
    <message>
        <source>已暂停</source>
        <translation>一時停止</translation>
    </message>
    <message>
        <source>完成</source>
        <translation>完了</translation>
    </message>
    <message>
        <source>失败</source>
        <translation>失敗</translation>
    </message>
    <message>
        <source>已取消</source>
        <translation>キャンセル済み</translation>
    </message>
</context>
<context>
    <name>TaskListWidget</name>
    <message>
        <source>重来</source>
        <translation>最初から</translation>
    </message>
</context>
<context>
    <name>ThumbnailDelegate</name>
    <message>
        <source>正在生成缩略图…</source>
        <translation>サムネイルを生成中…</translation>
    </message>
    <message>
        <source>预览页面</source>
        <translation>ページをプレビュー</translation>
    </message>
    <message>
        <source>向右旋转页面</source>
        <translation>ページを右に回転</translation>
    </message>
    <message>
        <source>删除页面</source>
        <translation>ページを削除</translation>
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
        <translation>言語設定</translation>
    </message>
    <message>
        <source>最小化</source>
        <translation>最小化</translation>
    </message>
    <message>
        <source>关闭</source>
        <translation>閉じる</translation>
    </message>
    <message>
        <source>还原</source>
        <translation>元に戻す</translation>
    </message>
    <message>
        <source>最大化</source>
        <translation>最大化</translation>
    </message>
</context>
<context>
    <name>ToolOptionsPanel</name>
    <message>
        <source>文件位置</source>
        <translation>保存場所</translation>
    </message>
</context>
</TS>
