import js from "@eslint/js";
import tseslint from "typescript-eslint";

export default tseslint.config(
    js.configs.recommended,
    ...tseslint.configs.recommendedTypeChecked,
    { languageOptions: { parserOptions: { projectService: true, tsconfigRootDir: import.meta.dirname } } },
    {
        rules: {
            "no-restricted-properties": [
                "error",
                ...["innerHTML", "outerHTML", "insertAdjacentHTML"].map((property) => ({
                    property,
                    message: "Names from a model are text alone.",
                })),
            ],
            "no-eval": "error",
            "no-implied-eval": "error",
        },
    },
    { ignores: ["*.mjs"] },
    { files: ["tests/**"], rules: { "@typescript-eslint/no-floating-promises": "off" } },
);
