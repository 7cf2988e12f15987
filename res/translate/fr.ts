<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_FR" sourcelanguage="zh_CN">
<context>
    <name>CustomTabBar</name>
    <message>
        <source>关闭</source>
        <translation>Fermer</translation>
    </message>
</context>
<context>
    <name>DocumentPrinting</name>
    <message>
        <source>打印 PDF</source>
        <translation>Imprimer le PDF</translation>
    </message>
    <message>
        <source>打印失败</source>
        <translation>Échec de l’impression</translation>
    </message>
    <message>
        <source>无法启动打印任务。</source>
        <translation>La tâche d’impression n’a pas pu démarrer.</translation>
    </message>
    <message>
        <source>打印未完成</source>
        <translation>Impression inachevée</translation>
    </message>
</context>
<context>
    <name>FileDropZoneWidget</name>
    <message>
        <source>PDF 文件 (*.pdf)</source>
        <translation>Fichiers PDF (*.pdf)</translation>
    </message>
    <message>
        <source>选择 PDF</source>
        <translation>Choisir un PDF</translation>
    </message>
    <message>
        <source>从你的桌面上添加或拖放PDF文件，开始转换。</source>
        <translation>Ajoutez des fichiers PDF ou déposez-les ici depuis votre bureau pour commencer la conversion.</translation>
    </message>
    <message>
        <source>添加文件</source>
        <translation>Ajouter des fichiers</translation>
    </message>
</context>
<context>
    <name>FileListItem</name>
    <message>
        <source>拖动排序</source>
        <translation>Glisser pour réordonner</translation>
    </message>
</context>
<context>
    <name>FileListWidget</name>
    <message>
        <source>PDF 文件 (*.pdf)</source>
        <translation>Fichiers PDF (*.pdf)</translation>
    </message>
    <message>
        <source>选择 PDF</source>
        <translation>Choisir un PDF</translation>
    </message>
    <message>
        <source>添加文件</source>
        <translation>Ajouter des fichiers</translation>
    </message>
    <message>
        <source>清除全部</source>
        <translation>Tout effacer</translation>
    </message>
</context>
<context>
    <name>FileLocationSelector</name>
    <message>
        <source>文件保存位置</source>
        <translation>Emplacement d’enregistrement</translation>
    </message>
    <message>
        <source>原始文件夹</source>
        <translation>Dossier source</translation>
    </message>
    <message>
        <source>桌面</source>
        <translation>Bureau</translation>
    </message>
    <message>
        <source>文档</source>
        <translation>Documents</translation>
    </message>
    <message>
        <source>选择其他文件夹…</source>
        <translation>Choisir un autre dossier…</translation>
    </message>
    <message>
        <source>选择文件保存位置</source>
        <translation>Choisir l’emplacement d’enregistrement</translation>
    </message>
    <message>
        <source>自定义文件夹</source>
        <translation>Dossier personnalisé</translation>
    </message>
</context>
<context>
    <name>FileSize</name>
    <message>
        <source>%1 B</source>
        <translation>%1&#xa0;o</translation>
    </message>
    <message>
        <source>%1 KB</source>
        <translation>%1&#xa0;Ko</translation>
    </message>
    <message>
        <source>%1 MB</source>
        <translation>%1&#xa0;Mo</translation>
    </message>
    <message>
        <source>%1 GB</source>
        <translation>%1&#xa0;Go</translation>
    </message>
</context>
<context>
    <name>HomePage</name>
    <message>
        <source>工具</source>
        <translation>Outils</translation>
    </message>
    <message>
        <source>最近文件</source>
        <translation>Fichiers récents</translation>
    </message>
    <message>
        <source>打开一个 PDF 文件，或选择下方的工具开始。</source>
        <translation>Ouvrez un fichier PDF ou choisissez un outil ci-dessous.</translation>
    </message>
    <message>
        <source>打开 PDF 文件</source>
        <translation>Ouvrir un fichier PDF</translation>
    </message>
    <message>
        <source>暂无最近文件</source>
        <translation>Aucun fichier récent</translation>
    </message>
    <message>
        <source>打开的 PDF 文件会显示在这里</source>
        <translation>Les fichiers PDF ouverts apparaîtront ici</translation>
    </message>
    <message>
        <source>PDF 文件 (*.pdf)</source>
        <translation>Fichiers PDF (*.pdf)</translation>
    </message>
</context>
<context>
    <name>ImageToPdfOptionsPanel</name>
    <message>
        <source>图像转PDF</source>
        <translation>Images en PDF</translation>
    </message>
    <message>
        <source>转换</source>
        <translation>Convertir</translation>
    </message>
    <message>
        <source>纵向</source>
        <translation>Portrait</translation>
    </message>
    <message>
        <source>横向</source>
        <translation>Paysage</translation>
    </message>
    <message>
        <source>页面大小</source>
        <translation>Taille de page</translation>
    </message>
    <message>
        <source>A4</source>
        <translation>A4</translation>
    </message>
    <message>
        <source>Letter(US)</source>
        <translation>Lettre (US)</translation>
    </message>
    <message>
        <source>页边距选项</source>
        <translation>Marges</translation>
    </message>
    <message>
        <source>无</source>
        <translation>Aucune</translation>
    </message>
    <message>
        <source>窄</source>
        <translation>Étroites</translation>
    </message>
    <message>
        <source>宽</source>
        <translation>Larges</translation>
    </message>
    <message>
        <source>页面方向</source>
        <translation>Orientation de la page</translation>
    </message>
    <message>
        <source>更多选项</source>
        <translation>Autres options</translation>
    </message>
    <message>
        <source>转换为单个PDF</source>
        <translation>Convertir en un seul PDF</translation>
    </message>
    <message>
        <source>每张图像都将保存为单个PDF</source>
        <translation>Sinon, chaque image devient un PDF distinct</translation>
    </message>
</context>
<context>
    <name>ImageToPdfPage</name>
    <message>
        <source>添加或拖拽图像文件进行转换。</source>
        <translation>Ajoutez des images ou déposez-les ici pour les convertir.</translation>
    </message>
    <message>
        <source>图像文件 (*.jpg *.jpeg *.png)</source>
        <translation>Fichiers image (*.jpg *.jpeg *.png)</translation>
    </message>
    <message>
        <source>选择图片</source>
        <translation>Choisir des images</translation>
    </message>
</context>
<context>
    <name>LanguageDialog</name>
    <message>
        <source>简体中文</source>
        <translation>Chinois simplifié</translation>
    </message>
    <message>
        <source>英语</source>
        <translation>Anglais</translation>
    </message>
    <message>
        <source>德语</source>
        <translation>Allemand</translation>
    </message>
    <message>
        <source>法语</source>
        <translation>Français</translation>
    </message>
    <message>
        <source>西班牙语</source>
        <translation>Espagnol</translation>
    </message>
    <message>
        <source>阿拉伯语</source>
        <translation>Arabe</translation>
    </message>
    <message>
        <source>日语</source>
        <translation>Japonais</translation>
    </message>
    <message>
        <source>应用</source>
        <translation>Appliquer</translation>
    </message>
    <message>
        <source>语言设置</source>
        <translation>Paramètres de langue</translation>
    </message>
    <message>
        <source>选择 Quillora 的界面语言</source>
        <translation>Choisissez la langue de l’interface de Quillora</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>切换语言？</source>
        <translation>Changer de langue ?</translation>
    </message>
    <message>
        <source>界面语言将切换为“%1”。</source>
        <translation>La langue de l’interface va passer à « %1 ».</translation>
    </message>
    <message>
        <source>当前打开的工具标签页将关闭。</source>
        <translation>Les onglets d’outils ouverts seront fermés.</translation>
    </message>
    <message>
        <source>切换</source>
        <translation>Changer</translation>
    </message>
    <message>
        <source>无法切换语言</source>
        <translation>Impossible de changer de langue</translation>
    </message>
    <message>
        <source>未能加载所选语言的翻译文件。</source>
        <translation>Le fichier de traduction de la langue choisie n’a pas pu être chargé.</translation>
    </message>
</context>
<context>
    <name>MainPage</name>
    <message>
        <source>首页</source>
        <translation>Accueil</translation>
    </message>
    <message>
        <source>压缩PDF</source>
        <translation>Compresser un PDF</translation>
    </message>
    <message>
        <source>PDF转为Office</source>
        <translation>PDF en Office</translation>
    </message>
    <message>
        <source>Office转为PDF</source>
        <translation>Office en PDF</translation>
    </message>
    <message>
        <source>图像转PDF</source>
        <translation>Images en PDF</translation>
    </message>
    <message>
        <source>PDF转为图像</source>
        <translation>PDF en images</translation>
    </message>
    <message>
        <source>PDF解密</source>
        <translation>Déchiffrer un PDF</translation>
    </message>
    <message>
        <source>PDF加密</source>
        <translation>Chiffrer un PDF</translation>
    </message>
    <message>
        <source>合并PDF</source>
        <translation>Fusionner des PDF</translation>
    </message>
    <message>
        <source>任务仍在进行</source>
        <translation>Des tâches sont en cours</translation>
    </message>
    <message>
        <source>关闭程序将停止尚未完成的任务。</source>
        <translation>La fermeture du programme arrête les tâches inachevées.</translation>
    </message>
    <message>
        <source>停止并关闭</source>
        <translation>Arrêter et fermer</translation>
    </message>
</context>
<context>
    <name>ModernComboBox</name>
    <message>
        <source>选择位置...</source>
        <translation>Choisir un emplacement…</translation>
    </message>
    <message>
        <source>选择文件夹</source>
        <translation>Choisir un dossier</translation>
    </message>
</context>
<context>
    <name>ModernMessageBox</name>
    <message>
        <source>取消</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>不保存</source>
        <translation>Ne pas enregistrer</translation>
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
        <translation>Office en PDF</translation>
    </message>
    <message>
        <source>转换</source>
        <translation>Convertir</translation>
    </message>
    <message>
        <source>将 Word、PowerPoint 和 Excel 文件转换为 PDF</source>
        <translation>Convertir des fichiers Word, PowerPoint et Excel en PDF</translation>
    </message>
</context>
<context>
    <name>OfficeToPdfPage</name>
    <message>
        <source>添加或拖拽文件进行转换。</source>
        <translation>Ajoutez des fichiers ou déposez-les ici pour les convertir.</translation>
    </message>
</context>
<context>
    <name>OfficeToolPage</name>
    <message>
        <source>暂不支持</source>
        <translation>Pas encore pris en charge</translation>
    </message>
    <message>
        <source>此版本尚不能转换 Office 文件。</source>
        <translation>Cette version ne peut pas encore convertir les fichiers Office.</translation>
    </message>
</context>
<context>
    <name>OutputLocation</name>
    <message>
        <source>原始文件</source>
        <translation>Dossier d’origine</translation>
    </message>
    <message>
        <source>桌面</source>
        <translation>Bureau</translation>
    </message>
    <message>
        <source>Quillora文件</source>
        <translation>Dossier Quillora</translation>
    </message>
    <message>
        <source>选择位置...</source>
        <translation>Choisir un emplacement…</translation>
    </message>
</context>
<context>
    <name>PageCardDelegate</name>
    <message>
        <source>无法显示此页面</source>
        <translation>Impossible d’afficher cette page</translation>
    </message>
</context>
<context>
    <name>PageGridZoomControl</name>
    <message>
        <source>缩小</source>
        <translation>Zoom arrière</translation>
    </message>
    <message>
        <source>放大</source>
        <translation>Zoom avant</translation>
    </message>
</context>
<context>
    <name>PageManagerDelegate</name>
    <message>
        <source>正在生成预览…</source>
        <translation>Génération de l’aperçu…</translation>
    </message>
    <message>
        <source>在此处插入页面</source>
        <translation>Insérer des pages ici</translation>
    </message>
    <message>
        <source>取消此处的拆分</source>
        <translation>Ne pas diviser ici</translation>
    </message>
    <message>
        <source>在此处拆分</source>
        <translation>Diviser ici</translation>
    </message>
    <message>
        <source>取消选择页面</source>
        <translation>Désélectionner la page</translation>
    </message>
    <message>
        <source>选择页面</source>
        <translation>Sélectionner la page</translation>
    </message>
    <message>
        <source>预览页面</source>
        <translation>Afficher la page</translation>
    </message>
    <message>
        <source>复制页面</source>
        <translation>Dupliquer la page</translation>
    </message>
    <message>
        <source>向右旋转页面</source>
        <translation>Pivoter la page à droite</translation>
    </message>
    <message>
        <source>删除页面</source>
        <translation>Supprimer la page</translation>
    </message>
</context>
<context>
    <name>PagePrinter</name>
    <message>
        <source>打印机无法创建新页面。</source>
        <translation>L’imprimante ne peut pas créer de nouvelle page.</translation>
    </message>
    <message>
        <source>第 %1 页渲染失败。</source>
        <translation>Le rendu de la page %1 a échoué.</translation>
    </message>
</context>
<context>
    <name>PasswordInput</name>
    <message>
        <source>隐藏密码</source>
        <translation>Masquer le mot de passe</translation>
    </message>
    <message>
        <source>显示密码</source>
        <translation>Afficher le mot de passe</translation>
    </message>
</context>
<context>
    <name>PasswordQuestion</name>
    <message>
        <source>密码错误，请重新输入 PDF 密码：</source>
        <translation>Mot de passe incorrect. Saisissez à nouveau le mot de passe du PDF :</translation>
    </message>
    <message>
        <source>需要密码</source>
        <translation>Mot de passe requis</translation>
    </message>
    <message>
        <source>确定</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Annuler</translation>
    </message>
</context>
<context>
    <name>PdfBackendError</name>
    <message>
        <source>文件不存在或已被移动。</source>
        <translation>Le fichier n’existe pas ou a été déplacé.</translation>
    </message>
    <message>
        <source>PDF 需要密码。</source>
        <translation>Le PDF nécessite un mot de passe.</translation>
    </message>
    <message>
        <source>PDF 密码错误。</source>
        <translation>Le mot de passe du PDF est incorrect.</translation>
    </message>
    <message>
        <source>PDF 已损坏或格式不受支持。</source>
        <translation>Le PDF est endommagé ou son format n’est pas pris en charge.</translation>
    </message>
    <message>
        <source>页面渲染失败。</source>
        <translation>La page n’a pas pu être affichée.</translation>
    </message>
    <message>
        <source>无法写入目标文件，请检查权限和磁盘空间。</source>
        <translation>Impossible d’écrire le fichier cible. Vérifiez les autorisations et l’espace disque.</translation>
    </message>
    <message>
        <source>操作未完成。</source>
        <translation>L’opération n’a pas abouti.</translation>
    </message>
</context>
<context>
    <name>PdfBottomControlBar</name>
    <message>
        <source>切换为适合高度</source>
        <translation>Ajuster à la hauteur</translation>
    </message>
    <message>
        <source>切换为适合宽度</source>
        <translation>Ajuster à la largeur</translation>
    </message>
    <message>
        <source>上一页</source>
        <translation>Page précédente</translation>
    </message>
    <message>
        <source>下一页</source>
        <translation>Page suivante</translation>
    </message>
</context>
<context>
    <name>PdfCompressOptionsPanel</name>
    <message>
        <source>压缩PDF</source>
        <translation>Compresser PDF</translation>
    </message>
    <message>
        <source>压缩</source>
        <translation>Compresser</translation>
    </message>
    <message>
        <source>基本</source>
        <translation>Standard</translation>
    </message>
    <message>
        <source>文件尺寸适中，质量最</source>
        <translation>Taille moyenne, meilleure qualité</translation>
    </message>
    <message>
        <source>强</source>
        <translation>Forte</translation>
    </message>
    <message>
        <source>文件最小，质量</source>
        <translation>Taille minimale, qualité réduite</translation>
    </message>
    <message>
        <source>选择压缩等级</source>
        <translation>Niveau de compression</translation>
    </message>
    <message>
        <source>保存选项</source>
        <translation>Options d’enregistrement</translation>
    </message>
</context>
<context>
    <name>PdfCompressPage</name>
    <message>
        <source>从你的桌面上添加或拖放PDF文件，开始压缩。</source>
        <translation>Ajoutez des fichiers PDF ou déposez-les ici depuis votre bureau pour commencer la compression.</translation>
    </message>
</context>
<context>
    <name>PdfConvertOptionsPanel</name>
    <message>
        <source>PDF 转为图像</source>
        <translation>PDF en images</translation>
    </message>
    <message>
        <source>转换</source>
        <translation>Convertir</translation>
    </message>
    <message>
        <source>选择图像格式</source>
        <translation>Format d’image</translation>
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
        <translation>Autres options</translation>
    </message>
    <message>
        <source>提取单个图像</source>
        <translation>Extraire les images une à une</translation>
    </message>
    <message>
        <source>PDF 中的每张图像都将保存为单张图像</source>
        <translation>Chaque image du PDF est enregistrée séparément</translation>
    </message>
</context>
<context>
    <name>PdfDecryOptionsPanel</name>
    <message>
        <source>解锁PDF</source>
        <translation>Déverrouiller PDF</translation>
    </message>
    <message>
        <source>解锁</source>
        <translation>Déverrouiller</translation>
    </message>
    <message>
        <source>密码</source>
        <translation>Mot de passe</translation>
    </message>
    <message>
        <source>保存选项</source>
        <translation>Options d’enregistrement</translation>
    </message>
    <message>
        <source>此项目为必填项</source>
        <translation>Champ obligatoire</translation>
    </message>
</context>
<context>
    <name>PdfDecryPage</name>
    <message>
        <source>从你的桌面上添加或拖放PDF文件，开始解密。</source>
        <translation>Ajoutez des fichiers PDF ou déposez-les ici depuis votre bureau pour commencer le déverrouillage.</translation>
    </message>
</context>
<context>
    <name>PdfDocumentView</name>
    <message>
        <source>正在渲染第 %1 页…</source>
        <translation>Affichage de la page %1…</translation>
    </message>
    <message>
        <source>无法显示此页面</source>
        <translation>Impossible d’afficher cette page</translation>
    </message>
</context>
<context>
    <name>PdfEncryOptionsPanel</name>
    <message>
        <source>加密PDF</source>
        <translation>Chiffrer PDF</translation>
    </message>
    <message>
        <source>添加密码</source>
        <translation>Ajouter un mot de passe</translation>
    </message>
    <message>
        <source>密码</source>
        <translation>Mot de passe</translation>
    </message>
    <message>
        <source>重新输入密码</source>
        <translation>Confirmer le mot de passe</translation>
    </message>
    <message>
        <source>保存选项</source>
        <translation>Options d’enregistrement</translation>
    </message>
    <message>
        <source>此项目为必填项</source>
        <translation>Champ obligatoire</translation>
    </message>
    <message>
        <source>两个密码应该匹配</source>
        <translation>Les mots de passe doivent correspondre</translation>
    </message>
</context>
<context>
    <name>PdfEncryPage</name>
    <message>
        <source>加密PDF</source>
        <translation>Chiffrer un PDF</translation>
    </message>
    <message>
        <source>从你的桌面上添加或拖放PDF文件，开始加密。</source>
        <translation>Ajoutez des fichiers PDF ou déposez-les ici depuis votre bureau pour commencer le chiffrement.</translation>
    </message>
    <message>
        <source>两个密码应该匹配</source>
        <translation>Les mots de passe doivent correspondre</translation>
    </message>
    <message>
        <source>继续将使用第一个密码加密文件。</source>
        <translation>Si vous continuez, les fichiers seront chiffrés avec le premier mot de passe.</translation>
    </message>
    <message>
        <source>继续</source>
        <translation>Continuer</translation>
    </message>
</context>
<context>
    <name>PdfFileCommands</name>
    <message>
        <source>此 PDF 已加密，请输入密码：</source>
        <translation>Ce PDF est chiffré. Saisissez le mot de passe :</translation>
    </message>
    <message>
        <source>无法打开 PDF</source>
        <translation>Impossible d’ouvrir le PDF</translation>
    </message>
    <message>
        <source>保存修改</source>
        <translation>Enregistrer les modifications</translation>
    </message>
    <message>
        <source>当前 PDF 已修改，是否保存？</source>
        <translation>Le PDF actuel a été modifié. Voulez-vous l’enregistrer ?</translation>
    </message>
    <message>
        <source>保存</source>
        <translation>Enregistrer</translation>
    </message>
    <message>
        <source>不保存</source>
        <translation>Ne pas enregistrer</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>未命名.pdf</source>
        <translation>Sans titre.pdf</translation>
    </message>
    <message>
        <source>将 PDF 保存为</source>
        <translation>Enregistrer le PDF sous</translation>
    </message>
    <message>
        <source>PDF 文件 (*.pdf)</source>
        <translation>Fichiers PDF (*.pdf)</translation>
    </message>
    <message>
        <source>保存 PDF 失败</source>
        <translation>Échec de l’enregistrement du PDF</translation>
    </message>
</context>
<context>
    <name>PdfInsertDropZone</name>
    <message>
        <source>插入 PDF
或将多个 PDF 拖放至此处</source>
        <translation>Insérer un PDF
ou déposer plusieurs PDF ici</translation>
    </message>
</context>
<context>
    <name>PdfMergeOptionsPanel</name>
    <message>
        <source>合并PDF</source>
        <translation>Fusionner PDF</translation>
    </message>
    <message>
        <source>合并</source>
        <translation>Fusionner</translation>
    </message>
    <message>
        <source>插入</source>
        <translation>Insérer</translation>
    </message>
    <message>
        <source>空白</source>
        <translation>Vierge</translation>
    </message>
    <message>
        <source>在合并之前，你可以在文件之间插入空白页</source>
        <translation>Avant la fusion, vous pouvez insérer des pages vierges entre les fichiers</translation>
    </message>
</context>
<context>
    <name>PdfMergePage</name>
    <message>
        <source>从你的桌面上添加或拖放PDF文件，开始合并。</source>
        <translation>Ajoutez des fichiers PDF ou déposez-les ici depuis votre bureau pour commencer la fusion.</translation>
    </message>
</context>
<context>
    <name>PdfOperationSidePanel</name>
    <message>
        <source>将选定页面提取为单个文件</source>
        <translation>Extraire les pages sélectionnées dans un seul fichier</translation>
    </message>
    <message>
        <source>将每个页面拆分为单个文件</source>
        <translation>Diviser chaque page dans un fichier distinct</translation>
    </message>
    <message>
        <source>提取</source>
        <translation>Extraire</translation>
    </message>
    <message>
        <source>拆分</source>
        <translation>Diviser</translation>
    </message>
    <message>
        <source>文件提取选项</source>
        <translation>Options d’extraction</translation>
    </message>
    <message>
        <source>将选定页面另存为</source>
        <translation>Enregistrer les pages sélectionnées sous</translation>
    </message>
    <message>
        <source>文件拆分选项</source>
        <translation>Options de division</translation>
    </message>
    <message>
        <source>输出预览</source>
        <translation>Aperçu de la sortie</translation>
    </message>
    <message>
        <source>文件位置</source>
        <translation>Emplacement des fichiers</translation>
    </message>
    <message>
        <source>请先选择要提取的页面</source>
        <translation>Sélectionnez d’abord les pages à extraire</translation>
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
        <translation>Cliquez sur les lignes pointillées entre les pages pour choisir où diviser.</translation>
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
        <translation>Le PDF à insérer est chiffré. Saisissez son mot de passe :</translation>
    </message>
    <message>
        <source>插入 PDF 失败</source>
        <translation>Échec de l’insertion du PDF</translation>
    </message>
    <message>
        <source>插入 PDF</source>
        <translation>Insérer un PDF</translation>
    </message>
    <message>
        <source>PDF 文件 (*.pdf)</source>
        <translation>Fichiers PDF (*.pdf)</translation>
    </message>
    <message>
        <source>在后面插入空白页</source>
        <translation>Insérer une page vierge après</translation>
    </message>
    <message>
        <source>提取失败</source>
        <translation>Échec de l’extraction</translation>
    </message>
    <message>
        <source>部分页面提取失败</source>
        <translation>Certaines pages n’ont pas pu être extraites</translation>
    </message>
    <message>
        <source>提取完成</source>
        <translation>Extraction terminée</translation>
    </message>
    <message>
        <source>拆分失败</source>
        <translation>Échec de la division</translation>
    </message>
    <message>
        <source>部分文件拆分失败</source>
        <translation>Certains fichiers n’ont pas pu être séparés</translation>
    </message>
    <message>
        <source>拆分完成</source>
        <translation>Division terminée</translation>
    </message>
    <message>
        <source>无法创建目标文件夹。</source>
        <translation>Le dossier de destination n’a pas pu être créé.</translation>
    </message>
    <message>
        <source>已生成 %1 个文件，%2 个文件失败。

%3</source>
        <translation>Fichiers créés : %1, en échec : %2.

%3</translation>
    </message>
    <message>
        <source>已生成 %1 个 PDF 文件。
%2</source>
        <translation>Fichiers PDF créés : %1.
%2</translation>
    </message>
</context>
<context>
    <name>PdfToOfficeOptionsPanel</name>
    <message>
        <source>PDF转为Office</source>
        <translation>PDF en Office</translation>
    </message>
    <message>
        <source>转换</source>
        <translation>Convertir</translation>
    </message>
    <message>
        <source>选择文件格式</source>
        <translation>Format de fichier</translation>
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
        <translation>Ajoutez des fichiers PDF ou déposez-les ici depuis votre bureau pour commencer la conversion.</translation>
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
        <translation>Vue de lecture</translation>
    </message>
    <message>
        <source>页面</source>
        <translation>Pages</translation>
    </message>
    <message>
        <source>页面管理视图</source>
        <translation>Vue de gestion des pages</translation>
    </message>
    <message>
        <source>显示或隐藏缩略图</source>
        <translation>Afficher ou masquer les vignettes</translation>
    </message>
    <message>
        <source>工具</source>
        <translation>Outils</translation>
    </message>
    <message>
        <source>PDF 工具</source>
        <translation>Outils PDF</translation>
    </message>
    <message>
        <source>插入</source>
        <translation>Insérer</translation>
    </message>
    <message>
        <source>插入 PDF 或空白页</source>
        <translation>Insérer un PDF ou une page vierge</translation>
    </message>
    <message>
        <source>提取</source>
        <translation>Extraire</translation>
    </message>
    <message>
        <source>提取选定页面</source>
        <translation>Extraire les pages sélectionnées</translation>
    </message>
    <message>
        <source>拆分</source>
        <translation>Diviser</translation>
    </message>
    <message>
        <source>拆分 PDF</source>
        <translation>Diviser le PDF</translation>
    </message>
    <message>
        <source>向左旋转</source>
        <translation>Faire pivoter vers la gauche</translation>
    </message>
    <message>
        <source>向右旋转</source>
        <translation>Faire pivoter vers la droite</translation>
    </message>
    <message>
        <source>删除选定页面</source>
        <translation>Supprimer les pages sélectionnées</translation>
    </message>
    <message>
        <source>全选</source>
        <translation>Tout sélectionner</translation>
    </message>
    <message>
        <source>选择全部页面</source>
        <translation>Sélectionner toutes les pages</translation>
    </message>
    <message>
        <source>撤销</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>重做</source>
        <translation>Rétablir</translation>
    </message>
    <message>
        <source>更多</source>
        <translation>Plus</translation>
    </message>
    <message>
        <source>手形工具</source>
        <translation>Outil main</translation>
    </message>
    <message>
        <source>压缩</source>
        <translation>Compresser</translation>
    </message>
    <message>
        <source>PDF 转为 Office</source>
        <translation>PDF vers Office</translation>
    </message>
    <message>
        <source>PDF 转为图像</source>
        <translation>PDF vers images</translation>
    </message>
    <message>
        <source>加密 PDF</source>
        <translation>Chiffrer le PDF</translation>
    </message>
    <message>
        <source>解锁 PDF</source>
        <translation>Déverrouiller le PDF</translation>
    </message>
    <message>
        <source>页面编号</source>
        <translation>Numéros de page</translation>
    </message>
    <message>
        <source>保存文件</source>
        <translation>Enregistrer le fichier</translation>
    </message>
    <message>
        <source>将文件保存为…</source>
        <translation>Enregistrer le fichier sous…</translation>
    </message>
    <message>
        <source>打印</source>
        <translation>Imprimer</translation>
    </message>
    <message>
        <source>在文件夹中显示</source>
        <translation>Afficher dans le dossier</translation>
    </message>
</context>
<context>
    <name>PdfUndoManager</name>
    <message>
        <source>插入 PDF</source>
        <translation>Insérer un PDF</translation>
    </message>
    <message>
        <source>插入空白页</source>
        <translation>Insérer une page vierge</translation>
    </message>
    <message>
        <source>复制页面</source>
        <translation>Dupliquer les pages</translation>
    </message>
    <message>
        <source>删除页面</source>
        <translation>Supprimer les pages</translation>
    </message>
    <message>
        <source>向左旋转页面</source>
        <translation>Faire pivoter les pages vers la gauche</translation>
    </message>
    <message>
        <source>向右旋转页面</source>
        <translation>Faire pivoter les pages vers la droite</translation>
    </message>
    <message>
        <source>移动页面</source>
        <translation>Déplacer la page</translation>
    </message>
</context>
<context>
    <name>SaveOption</name>
    <message>
        <source>替换原始文件</source>
        <translation>Remplacer le fichier d’origine</translation>
    </message>
    <message>
        <source>保留原始文件</source>
        <translation>Conserver le fichier d’origine</translation>
    </message>
</context>
<context>
    <name>SaveProgress</name>
    <message>
        <source>正在保存 PDF</source>
        <translation>Enregistrement du PDF</translation>
    </message>
    <message>
        <source>正在写入文件，大文件可能需要一些时间。</source>
        <translation>Écriture du fichier. Les fichiers volumineux peuvent prendre un certain temps.</translation>
    </message>
    <message>
        <source>保存完成前请不要关闭程序。</source>
        <translation>Ne fermez pas le programme avant la fin de l’enregistrement.</translation>
    </message>
</context>
<context>
    <name>TaskCenter</name>
    <message>
        <source>找不到文件或无法打开文件。</source>
        <translation>Le fichier est introuvable ou ne peut pas être ouvert.</translation>
    </message>
    <message>
        <source>需要密码。</source>
        <translation>Un mot de passe est requis.</translation>
    </message>
    <message>
        <source>密码不正确。</source>
        <translation>Le mot de passe est incorrect.</translation>
    </message>
    <message>
        <source>文件已损坏或不受支持。</source>
        <translation>Le fichier est endommagé ou n’est pas pris en charge.</translation>
    </message>
    <message>
        <source>无法渲染页面。</source>
        <translation>Une page n’a pas pu être affichée.</translation>
    </message>
    <message>
        <source>无法写入结果。</source>
        <translation>Le résultat n’a pas pu être écrit.</translation>
    </message>
    <message>
        <source>图像已损坏或不受支持。</source>
        <translation>L’image est endommagée ou n’est pas prise en charge.</translation>
    </message>
</context>
<context>
    <name>TaskListItem</name>
    <message>
        <source>打开文件</source>
        <translation>Ouvrir le fichier</translation>
    </message>
    <message>
        <source>打开所在文件夹</source>
        <translation>Ouvrir le dossier</translation>
    </message>
    <message>
        <source>处理中...</source>
        <translation>Traitement…</translation>
    </message>
    <message>
        <source>已暂停</source>
        <translation>En pause</translation>
    </message>
    <message>
        <source>完成</source>
        <translation>Terminé</translation>
    </message>
    <message>
        <source>失败</source>
        <translation>Échec</translation>
    </message>
    <message>
        <source>已取消</source>
        <translation>Annulé</translation>
    </message>
</context>
<context>
    <name>TaskListWidget</name>
    <message>
        <source>重来</source>
        <translation>Recommencer</translation>
    </message>
</context>
<context>
    <name>ThumbnailDelegate</name>
    <message>
        <source>正在生成缩略图…</source>
        <translation>Génération de la miniature…</translation>
    </message>
    <message>
        <source>预览页面</source>
        <translation>Afficher la page</translation>
    </message>
    <message>
        <source>向右旋转页面</source>
        <translation>Pivoter la page à droite</translation>
    </message>
    <message>
        <source>删除页面</source>
        <translation>Supprimer la page</translation>
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
        <translation>Paramètres de langue</translation>
    </message>
    <message>
        <source>最小化</source>
        <translation>Réduire</translation>
    </message>
    <message>
        <source>关闭</source>
        <translation>Fermer</translation>
    </message>
    <message>
        <source>还原</source>
        <translation>Restaurer</translation>
    </message>
    <message>
        <source>最大化</source>
        <translation>Agrandir</translation>
    </message>
</context>
<context>
    <name>ToolOptionsPanel</name>
    <message>
        <source>文件位置</source>
        <translation>Emplacement d’enregistrement</translation>
    </message>
</context>
</TS>
